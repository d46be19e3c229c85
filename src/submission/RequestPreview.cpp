// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/RequestPreview.h"

#include "catalogue/Catalogue.h"
#include "catalogue/PasswordKey.h"
#include "core/Failure.h"
#include "core/IniFile.h"
#include "core/Rows.h"
#include "core/Services.h"
#include "core/clsPreference.h"
#include "projects/WebsiteFile.h"
#include "projects/WebsiteKeys.h"
#include "submission/SubmissionData.h"
#include "submission/SubmissionRecords.h"
#include "transport/RequestUrl.h"

#include <QByteArray>

namespace relay {

namespace {
std::string chosenURL(const PreviewWish& wish) {
    if (!wish.URL.empty()) return wish.URL;
    const std::vector<std::string> urls = websiteURLs(wish.websiteFile);
    if (urls.empty()) throw Failure(std::string(kNoURL));
    return urls.front();
}

std::string formText(std::string_view encoded) {
    std::string text(encoded);
    for (char& c : text)
        if (c == '+') c = ' ';
    return QByteArray::fromPercentEncoding(QByteArray::fromStdString(text)).toStdString();
}
}  // namespace

std::vector<std::string> websiteURLs(const std::string& websiteFile) {
    Rows rows;
    loadUrlList(websiteFile, rows);
    std::vector<std::string> urls;
    for (int row = 0; row < rows.count(); ++row) urls.emplace_back(rows.at(row).text);
    return urls;
}

RequestPreview previewRequest(const Services& services, const Catalogue& catalogue, const PreviewWish& wish) {
    const clsEngines& engine = catalogue.engine(wish.engine);
    const IniFile website = IniFile::load(wish.websiteFile);
    WebDetails details = readWebDetails(chosenURL(wish), website);
    const bool blockSpam = services.preference.BlockSpam != 0;
    const auto build = [&] {
        return submissionRequest(engine.Method(), engine.Action(),
                                 expandQuery({engine, details, website, catalogue.countries, blockSpam}));
    };
    RequestPreview preview;
    std::optional<SubmissionRequest> request = build();
    if (!request) {
        preview.refusal = "Nothing would be sent: the engine \"" + std::string(engine.name()) +
                          "\" has no action, or its template contains no macro. It would count as failed.";
        return preview;
    }
    try {
        if (details.Password.empty()) preview.warning = emptyPasswordWarning(engine);
        // Checks the real request, not the one with the hidden password.
        preview.URL = wireUrl(request->URL);
        if (wish.hidePassword && !details.Password.empty()) {
            details.Password = kHiddenPassword;
            request = build();
            preview.URL = wireUrl(request->URL);
        }
    } catch (const Failure& refused) {
        preview = {};
        preview.refusal = std::string("Nothing would be sent: ") + refused.what() + ".";
        return preview;
    }
    preview.isPost = request->isPost();
    if (preview.isPost) preview.body = std::move(request->data);
    return preview;
}

std::vector<std::pair<std::string, std::string>> RequestPreview::fields() const {
    std::vector<std::pair<std::string, std::string>> read;
    const auto take = [&read](std::string_view text) {
        while (!text.empty()) {
            const std::string_view field = text.substr(0, text.find('&'));
            text.remove_prefix(std::min(text.size(), field.size() + 1));
            const std::string_view name = field.substr(0, field.find('='));
            const std::string_view value = field.substr(std::min(field.size(), name.size() + 1));
            if (!field.empty()) read.emplace_back(formText(name), formText(value));
        }
    };
    if (const std::size_t mark = URL.find('?'); mark != std::string::npos)
        take(std::string_view(URL).substr(mark + 1));
    take(body);
    return read;
}

}  // namespace relay
