// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetools/DoorwayPage.h"

#include "core/FileNames.h"
#include "core/ReportFiles.h"
#include "core/Text.h"

namespace relay {

namespace {

constexpr std::string_view kBreak = "\r\n";

template <std::size_t Number>
std::string& keyword(DoorwayFields& fields) {
    return fields.txtKeywords[Number];
}
template <std::string DoorwayFields::*Field>
std::string& text(DoorwayFields& fields) {
    return fields.*Field;
}

class PageWriter final {
  public:
    PageWriter(const DoorwayFields& fields, std::string_view maker)
        : m_fields(fields),
          m_maker(maker),
          m_link("<a href=" + std::string(startsWithNoCase(fields.cboSiteURL, "http") ? "" : "http://") +
                 fields.cboSiteURL + ">") {
        for (const std::string& one : fields.txtKeywords)
            if (!one.empty()) m_keywords.append(m_keywords.empty() ? "" : ",").append(one);
        if (m_keywords.ends_with(',')) m_keywords.pop_back();
    }

    std::string write() {
        addHead();
        addTop();
        addSubTitles();
        addBottom();
        return std::move(m_text);
    }

  private:
    template <typename... Pieces>
    void line(const Pieces&... pieces) {
        (m_text.append(pieces), ...);
        m_text.append(kBreak);
    }

    void addHead() {
        line("<!--", m_fields.txtTitle, "-->");
        line("<!--", m_keywords, "-->");
        line("<!--", m_fields.txtDescription, "-->");
        line("<html>");
        line("<head>");
        line("<title>", m_fields.txtTitle, "</title>");
        line("<META name=\"Keywords\" content=\"", m_keywords, "\">");
        line("<META name=\"Description\" content=\"", m_fields.txtDescription, "\">");
        line("</head>");
    }
    void addTop() {
        line("<!--", m_fields.txtSummary, "-->");
        line("<body bgcolor=#FFFFFF>");
        line("<p><font face=arial size=2>");
        line(m_link, "<Img Src=\"", m_fields.txtImageURL, "\" border=0 ALT=\"", m_fields.txtTitle, "\"></a>");
        line("<hr size=1>");
        line("<center><h4>", m_link, m_fields.txtTitle, "</h4></a></center>");
        line(m_fields.txtSummary, "<br><br>");
    }
    void addSubTitles() {
        if (m_fields.txtSubTitle1.empty() && m_fields.txtSubTitle2.empty() && m_fields.txtSubTitle3.empty())
            return;
        line("For more information about ", m_link, m_fields.txtKeywords[0],
             "</a>, please click on the link title below:<br>");
        line("<ul><li><h5>", m_link, m_fields.txtSubTitle1, "</a></h5>");
        line("<li><h5>", m_link, m_fields.txtSubTitle2, "</a></h5>");
        line("<li><h5>", m_link, m_fields.txtSubTitle3, "</a></h5></ul>");
    }
    void addBottom() {
        line("<p>If you need more information about ", m_link, m_fields.txtKeywords[1], "</a>, ");
        line("you will find a very informative website at ", m_link, m_fields.txtCompany,
             "</a>.<br><br><br>");
        std::string links = "| ";
        for (std::size_t i = 0; i < m_fields.txtKeywords.size(); ++i) {
            if (m_fields.txtKeywords[i].empty()) continue;
            if (i == 4) links.append("<br>| ");
            links.append(m_link).append(m_fields.txtKeywords[i]).append("</a> | ").append(kBreak);
        }
        line("<center>", links, "</center>");
        line("<br><br><br><hr size=1>");
        line("<center><font face=arial size=1>This Page is created by <a href=", m_maker,
             ">Korvel Web Relay Software</a></font></center></font></p>");
        line("</body>");
        line("</html>");
    }

    const DoorwayFields& m_fields;
    std::string_view m_maker;
    std::string m_link;
    std::string m_keywords;
    std::string m_text;
};

}  // namespace

const std::vector<DoorwayKey>& doorwayKeys() {
    static const std::vector<DoorwayKey> keys = {{"Title", text<&DoorwayFields::txtTitle>},
                                                 {"Keyword1", keyword<0>},
                                                 {"Keyword2", keyword<1>},
                                                 {"Keyword3", keyword<2>},
                                                 {"Keyword4", keyword<3>},
                                                 {"Keyword5", keyword<4>},
                                                 {"Keyword6", keyword<5>},
                                                 {"Keyword7", keyword<6>},
                                                 {"Keyword8", keyword<7>},
                                                 {"Description", text<&DoorwayFields::txtDescription>, true},
                                                 {"URL", text<&DoorwayFields::cboSiteURL>},
                                                 {"SubTitle1", text<&DoorwayFields::txtSubTitle1>},
                                                 {"SubTitle2", text<&DoorwayFields::txtSubTitle2>},
                                                 {"SubTitle3", text<&DoorwayFields::txtSubTitle3>},
                                                 {"Body", text<&DoorwayFields::txtSummary>, true},
                                                 {"LogoLocation", text<&DoorwayFields::txtImageURL>},
                                                 {"Company", text<&DoorwayFields::txtCompany>},
                                                 {"OutputLocation", text<&DoorwayFields::txtFileLocation>}};
    return keys;
}

std::string doorwayPage(const DoorwayFields& fields, std::string_view makersAddress) {
    return PageWriter(fields, makersAddress).write();
}

std::string doorwayFileName(std::string_view keyword) {
    const std::string name = replaceAll(keyword, " ", "_");
    return distinctFileName(mendedFileName(name, name.size())) + ".html";
}

void setDoorwayKeywords(DoorwayFields& fields, const std::vector<std::string>& keywords) {
    for (std::size_t i = 0; i < fields.txtKeywords.size(); ++i)
        fields.txtKeywords[i] = i < keywords.size() ? keywords[i] : std::string();
}

}  // namespace relay
