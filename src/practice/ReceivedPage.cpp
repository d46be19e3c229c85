// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ScreenText.h"
#include "core/Text.h"
#include "practice/PracticePages.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <utility>

namespace relay {

namespace {

// A browser shows this many rows without delay; /received.json has all.
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

using Body = std::function<bool(std::string& piece)>;

// `start`, then up to `most` submissions by `pieceOf`, newest first, then `end`.
template <typename Piece>
Body bodyOf(const ReceivedLog& received, std::string start, Piece pieceOf, std::string end,
            std::size_t most) {
    return [&received, start = std::move(start), pieceOf, end = std::move(end), most,
            before = received.total(), begun = false, ended = false](std::string& piece) mutable {
        if (ended) return false;
        if (!std::exchange(begun, true)) {
            piece = std::move(start);
            return true;
        }
        auto next = most == 0 ? std::nullopt : received.newestBefore(before);
        if (next) {
            before = next->number;
            --most;
            piece = pieceOf(next->submission);
        } else {
            ended = true;
            piece = std::move(end);
        }
        return true;
    };
}

Body tablePage(const ReceivedLog& received) {
    const std::size_t total = received.total();
    const std::size_t shown = std::min(received.kept(), kRowsShown);
    std::string content =
        "<p class=\"quiet\">Every engine here is a practice engine: what is submitted to it "
        "stays on this machine.</p>\n";
    if (shown == 0) content += "<p>Nothing received yet.</p>\n";
    if (shown > 0) {
        content += "<p>" + std::to_string(total) + " received, newest first";
        if (total > shown) content += "; the last " + std::to_string(shown) + " shown";
        content +=
            ". <a href=\"/received.json\">As JSON</a></p>\n<table>\n<thead><tr><th>Time</th>"
            "<th>Engine</th><th>Method</th><th>Fields</th></tr></thead>\n<tbody>\n</tbody>\n</table>\n";
    }
    const std::string page = htmlPage("Practice web", content);
    const std::size_t rowsAt = std::min(page.rfind("</tbody>"), page.size());
    return bodyOf(received, page.substr(0, rowsAt), tableRow, page.substr(rowsAt), shown);
}

QString jsonText(std::string_view bytes) {
    return QString::fromStdString(toPrintableUtf8(bytes));
}

QJsonArray jsonPairs(const NamedValues& pairs) {
    QJsonArray array;
    for (const auto& [name, value] : pairs) array.append(QJsonArray{jsonText(name), jsonText(value)});
    return array;
}

std::string jsonObject(const ReceivedSubmission& row) {
    const QJsonObject object{{QStringLiteral("time"), row.time.toString(Qt::ISODateWithMs)},
                             {QStringLiteral("engine"), jsonText(row.engine)},
                             {QStringLiteral("method"), jsonText(row.method)},
                             {QStringLiteral("target"), jsonText(row.target)},
                             {QStringLiteral("body"), jsonText(row.body)},
                             {QStringLiteral("headers"), jsonPairs(row.headers)},
                             {QStringLiteral("fields"), jsonPairs(row.fields)}};
    return QJsonDocument(object).toJson(QJsonDocument::Indented).trimmed().toStdString();
}

Body jsonPage(const ReceivedLog& received) {
    const auto item = [first = true](const ReceivedSubmission& row) mutable {
        return (std::exchange(first, false) ? "\n" : ",\n") + jsonObject(row);
    };
    return bodyOf(received, "[", item, "\n]\n", ReceivedLog::kMostSubmissions);
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
    reply.more = asJson ? jsonPage(site.received) : tablePage(site.received);
    return reply;
}

}  // namespace relay
