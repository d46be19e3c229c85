// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/Macros.h"
#include "core/Text.h"
#include "practice/PracticePages.h"

namespace relay {

namespace {

std::string categoryOptions(const NamedValues& categories) {
    std::string options;
    for (const auto& [label, value] : categories) {
        options += "<option value=\"" + escapeHtml(value) + "\">" + escapeHtml(label) + "</option>\n";
    }
    return options;
}

std::string fieldHtml(const std::string& name, const std::string& value, const NamedValues& categories) {
    const std::string named = " name=\"" + escapeHtml(name) + "\"";
    const bool isMacro = value.size() > 2 && value.front() == '<' && value.back() == '>';
    if (!isMacro) return "<input type=\"hidden\"" + named + " value=\"" + escapeHtml(value) + "\">\n";
    const auto macro = macroOf(std::string_view(value).substr(1, value.size() - 2));
    const std::string label = "<label>" + escapeHtml(name) + "</label>\n";
    if (macro == Macro::Description) return label + "<textarea" + named + " rows=\"3\"></textarea>\n";
    if (macro == Macro::Category && !categories.empty())
        return label + "<select" + named + " size=\"1\">\n" + categoryOptions(categories) + "</select>\n";
    return label + "<input" + named + " type=\"" + (macro == Macro::Password ? "password" : "text") + "\">\n";
}

std::string formPage(const EngineForm& form, const std::string& address) {
    std::string content = "<form action=\"" + escapeHtml(address + form.target) + "\" method=\"" +
                          escapeHtml(toLower(form.method)) + "\">\n";
    for (const auto& [name, value] : form.fields) content += fieldHtml(name, value, form.categories);
    return htmlPage("Add your site to " + form.name, content + "<button>Submit</button>\n</form>\n");
}

}  // namespace

std::optional<PracticeReply> enginePage(const PracticeRequest& request, PracticeSite& site) {
    const std::string slug(engineOf(request.path()));
    if (slug.empty()) return std::nullopt;
    const std::string folder = "/engines/" + slug;
    const std::string_view rest = request.path().substr(folder.size());
    PracticeReply reply;
    if (rest.empty() || rest == "/") {
        const EngineForm form = site.forms.form(slug);
        reply.body = htmlPage(form.name, "<p>A practice engine. <a href=\"" + escapeHtml(folder) +
                                             "/add\">Add your site</a></p>\n");
        return reply;
    }
    if (rest == "/add") {
        reply.body = formPage(site.forms.form(slug), site.address);
        return reply;
    }
    return std::nullopt;
}

}  // namespace relay
