// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ScreenText.h"
#include "core/Text.h"
#include "practice/PracticePages.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace relay {

namespace {

// A browser lays out this many rows without a wait; /received.json has all.
constexpr std::size_t kRowsShown = 500;

bool isOwnHost(std::string_view host) {
    if (host.empty()) return true;
    const std::string_view name = host.substr(0, host.rfind(':'));
    return name == "127.0.0.1" || equalsNoCase(name, "localhost");
}

std::string tableRow(const ReceivedSubmission& submission) {
    std::string row = "<tr><td><time datetime=\"";
    row += submission.time.toString(Qt::ISODate).toStdString();
    row += "\">" + submission.time.toString(QStringLiteral("HH:mm:ss")).toStdString() + "</time></td><td>";
    row += escapeHtml(submission.engine) + "</td><td>" + escapeHtml(submission.method) + "</td><td><dl>";
    for (const auto& [name, value] : submission.fields) {
        row += "<dt>" + escapeHtml(name) + "</dt><dd>" + escapeHtml(value) + "</dd>";
    }
    return row + "</dl></td></tr>\n";
}

std::string tablePage(const ReceivedLog& received) {
    const auto submissions = received.newest(kRowsShown);
    const std::size_t total = received.total();
    std::string content =
        "<p class=\"quiet\">Every engine here is a practice engine: what is submitted to it "
        "stays on this machine.</p>\n";
    if (submissions.empty()) {
        return htmlPage("Practice web", content + "<p>Nothing received yet.</p>\n");
    }
    content += "<p>" + std::to_string(total) + " received, newest first";
    if (total > submissions.size()) content += "; the last " + std::to_string(submissions.size()) + " shown";
    content +=
        ". <a href=\"/received.json\">As JSON</a></p>\n<table>\n<thead><tr><th>Time</th>"
        "<th>Engine</th><th>Method</th><th>Fields</th></tr></thead>\n<tbody>\n";
    for (auto row = submissions.rbegin(); row != submissions.rend(); ++row) content += tableRow(*row);
    return htmlPage("Practice web", content + "</tbody>\n</table>\n");
}

QString jsonText(std::string_view bytes) {
    return QString::fromStdString(toPrintableUtf8(bytes));
}

QJsonArray jsonPairs(const NamedValues& pairs) {
    QJsonArray array;
    for (const auto& [name, value] : pairs) array.append(QJsonArray{jsonText(name), jsonText(value)});
    return array;
}

std::string jsonOf(const ReceivedLog& received) {
    QJsonArray array;
    const auto submissions = received.newest();
    for (auto row = submissions.rbegin(); row != submissions.rend(); ++row) {
        array.append(QJsonObject{{QStringLiteral("time"), row->time.toString(Qt::ISODateWithMs)},
                                 {QStringLiteral("engine"), jsonText(row->engine)},
                                 {QStringLiteral("method"), jsonText(row->method)},
                                 {QStringLiteral("target"), jsonText(row->target)},
                                 {QStringLiteral("body"), jsonText(row->body)},
                                 {QStringLiteral("headers"), jsonPairs(row->headers)},
                                 {QStringLiteral("fields"), jsonPairs(row->fields)}});
    }
    return QJsonDocument(array).toJson(QJsonDocument::Indented).toStdString();
}

}  // namespace

std::optional<PracticeReply> receivedPage(const PracticeRequest& request, PracticeSite& site) {
    const bool asJson = request.path() == "/received.json";
    if (!asJson && request.path() != "/") return std::nullopt;
    PracticeReply reply;
    if (!isOwnHost(request.header("Host"))) {
        reply.status = 403;
        reply.body = htmlPage("Not for this host", "<p>Open this page at 127.0.0.1.</p>\n");
        return reply;
    }
    if (asJson) reply.type = "application/json";
    reply.body = asJson ? jsonOf(site.received) : tablePage(site.received);
    return reply;
}

}  // namespace relay
