// SPDX-License-Identifier: GPL-3.0-or-later
// Draws the window's panels to PNG files, to check changes and for the documentation:
// QT_QPA_PLATFORM=offscreen KORVEL_RELAY_PALETTE=light QT_SCALE_FACTOR=2 pictures FOLDER
#include "app/Program.h"
#include "app/frmAbout.h"
#include "app/frmHelp.h"
#include "app/frmPreference.h"
#include "app/frmSplash.h"
#include "catalogue/frmEngineBuilder.h"
#include "catalogue/frmUpdateEngines.h"
#include "core/FileStore.h"
#include "core/Text.h"
#include "extras/News.h"
#include "extras/frmAddIns.h"
#include "extras/frmNews.h"
#include "ftp/frmFTPClient.h"
#include "ftp/frmFTPLogin.h"
#include "pagetools/frmDoorway.h"
#include "pagetools/frmMetaTag.h"
#include "pagetools/frmMetaTagChanges.h"
#include "pagetools/frmOptimizer.h"
#include "practice/PracticeWeb.h"
#include "practice/StarterServer.h"
#include "projects/frmAddURL.h"
#include "ranking/frmKeywordBuilder.h"
#include "ranking/frmRanking.h"
#include "ranking/frmSearch.h"
#include "submission/frmPreview.h"
#include "submission/frmSubmit.h"
#include "support/FaultServer.h"
#include "support/FtpServer.h"
#include "support/ScriptedPrompts.h"
#include "support/TestHome.h"
#include "widgets/Appearance.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTreeView>

#include <algorithm>
#include <filesystem>

namespace {
using namespace relay;

void save(QWidget& widget, const QString& folder, const char* name) {
    widget.ensurePolished();
    QCoreApplication::processEvents();
    widget.grab().save(folder + QLatin1Char('/') + QString::fromLatin1(name) + QStringLiteral(".png"));
}

void fillHome(const test::TestHome& home, const std::string& practice) {
    for (const char* name : {"country.kws", "cat.kws"})
        std::filesystem::copy(std::string(RELAY_DATA_FOLDER "/") + name, home.path(name));
    for (const char* name : {"krveng5.dat", "catkws.dat", "kwreng.dat"})
        home.write(
            std::string("data/") + name,
            pointAtPracticeWeb(readFile(std::string(RELAY_DATA_FOLDER "/practice/") + name), practice));
    home.write("practice.addr", practice + "/\n");
    home.write("settings.ini", "[Korvel%20Relay]\nPreference\\LoadConfig=1\n");
    home.write("project.kwj",
               "[Garden Shop]\r\nDescription=Plants, pots and tools for small gardens\r\nLast=2\r\n1=Roses|" +
                   home.path("Projects/Roses.kws") + "\r\n2=Garden Tools|" +
                   home.writeWebsite("Projects/Tools.kws", {"http://www.roses.example/tools/"}) +
                   "\r\n[Travel Notes]\r\nDescription=\r\n"
                   "Last=1\r\n1=Harbour Walks|" +
                   home.writeWebsite("Projects/Walks.kws",
                                     {"http://walks.example/", "http://walks.example/maps.html"}) +
                   "\r\n");
    home.write(
        "Projects/Roses.kws",
        "[Web Site Info]\r\nVersion=6.0\r\nTitle=Old Garden Roses\r\nKeyword=roses, old roses, climbing "
        "roses, rose care, rose nursery\r\nDescription=A nursery for old garden roses: 240 kinds, grown "
        "outdoors, sent bare-rooted from November to March, with a guide to planting and care.\r\n"
        "WebType=Commercial Site\r\nLanguage=English\r\nLastURL=4\r\nMainCategory=Home and Garden\r\n"
        "Category=\r\nYourName=Ada Mills\r\nEmail=ada@roses.example\r\nCompany=Old Garden Roses\r\n"
        "Address=12 Harbour Road\r\nCity=Bristol\r\npostcode=BS1 5TY\r\nState=Avon\r\nCountry=United "
        "Kingdom\r\nPhone=+44 117 496 0012\r\nFax=+44 117 496 0013\r\nPassword=secret\r\nBlockFFA=1\r\n"
        "LastReport=2\r\n[URL]\r\nURL1=http://www.roses.example/\r\nLocalFile1=\r\n"
        "URL2=http://www.roses.example/climbing.html\r\nLocalFile2=\r\n"
        "URL3=http://www.roses.example/care.html\r\nLocalFile3=\r\n"
        "URL4=http://www.roses.example/contact.html\r\nLocalFile4=\r\n[Report]\r\n"
        "URL1=http://www.roses.example/\r\nDate1=Apr 01, 2026 13:05\r\nReportFile1=/reports/a.htm\r\n"
        "URL2=http://www.roses.example/care.html\r\nDate2=Apr 01, 2026 13:07\r\n"
        "ReportFile2=/reports/b.htm\r\n");
}

void drawMetaTags(Program& program, const test::TestHome& home, const QString& folder) {
    for (const char* name : {"Site/index.html", "Site/climbing.html", "Site/care.html"})
        home.write(
            name,
            "<html>\r\n<head>\r\n<title>Roses</title>\r\n<meta name=\"keywords\" content=\"roses\">\r\n"
            "<link rel=\"stylesheet\" href=\"roses.css\">\r\n</head>\r\n<body>\r\n<h1>Old Garden "
            "Roses</h1>\r\n</body>\r\n</html>\r\n");
    home.write("Site/roses.css", "");
    home.write("Site/pictures/rose.txt", "");
    frmMetaTag editor(program.services(), {{}, [] { return false; }, {}});
    editor.editor().openFolder(home.path("Site"));
    editor.findChild<QAction*>(QStringLiteral("mnuSelectPages"))->trigger();
    editor.editor().chooseRow(3);
    editor.editor().txtTitle.set("Old Garden Roses: 240 kinds, grown outdoors");
    editor.editor().txtKeyWord.set("roses, old roses, climbing roses, rose care, rose nursery");
    editor.editor().txtDescription.set(
        "A nursery for old garden roses, sent bare-rooted from November to March.");
    Q_EMIT editor.editor().fieldsChanged();
    editor.findChild<QRadioButton*>(QStringLiteral("optUpdate_1"))->setChecked(true);
    editor.show();
    save(editor, folder, "meta-tag-editor");
    editor.resize(editor.minimumSizeHint());
    save(editor, folder, "meta-tag-editor-small");
    frmMetaTagChanges changes(editor.editor().selectedFiles(), *editor.editor().wantedChange());
    changes.show();
    save(changes, folder, "meta-tag-changes");
}

// A landing page of which one file is there already; then its text, and an empty form.
void drawDoorway(Program& program, const test::TestHome& home, const QString& folder) {
    frmDoorway form(program.services());
    form.show();
    form.resize(980, 690);
    save(form, folder, "doorway-empty");
    form.hide();
    home.write("Landing/roses_in_a_day.html", "x");
    form.doorway().fields = {
        "Roses for Small Gardens",
        {"small roses", "patio roses", "roses in a day"},
        "Old garden roses that stay small, for pots and balconies.",
        "www.roses.example/small",
        "Roses for pots",
        "Roses for balconies",
        "Planting and care",
        "Twelve old garden roses stay under a metre. They are grown outdoors, come bare-rooted "
        "from November to March, and flower in their first summer.",
        "http://www.roses.example/small.jpg",
        "Old Garden Roses",
        home.path("Landing")};
    form.show();
    save(form, folder, "doorway");
    auto* const tabs = form.findChild<QTabWidget*>(QStringLiteral("tabPage"));
    tabs->setCurrentIndex(1);
    save(form, folder, "doorway-text");
    form.resize(form.minimumSizeHint());
    save(form, folder, "doorway-small");
}

// A page of the roses with a few mistakes.
void drawOptimizer(Program& program, const QString& folder) {
    constexpr std::string_view kPage =
        "<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>Old Garden Roses: 240 kinds of "
        "old "
        "roses, climbing roses and wild roses, grown outdoors</title>\n<meta name=\"keywords\" "
        "content=\"roses,old roses,climbing roses\">\n<meta name=\"description\" content=\"A nursery for old "
        "garden roses: climbing roses and old roses, sent bare-rooted.\">\n<link rel=\"canonical\" "
        "href=\"https://www.roses.example/\">\n<script type=\"application/ld+json\">\n{\"@type\": "
        "\"Store\",\n\"name\": \"Old Garden Roses\",}\n</script>\n</head>\n<body>\n<h1>Old Garden "
        "Roses</h1>\n<img src=\"http://www.roses.example/rose.jpg\">\n<p>We grow 240 kinds of old roses "
        "outdoors.</p>\n<h1>Climbing roses</h1>\n<p>For walls, arches and trees.</p>\n</body>\n</html>\n";
    program.window().findChild<QAction*>(QStringLiteral("mnuToolsItems_1"))->trigger();
    auto& form = *program.window().findChild<frmOptimizer*>();
    auto* const tabs = form.findChild<QTabWidget*>(QStringLiteral("SSTab1"));
    save(form, folder, "optimizer-empty");
    tabs->setCurrentIndex(1);
    save(form, folder, "optimizer-empty-findings");
    Optimizer& optimizer = program.main().optimizer;
    optimizer.cboSiteURL = "http://www.roses.example/";
    optimizer.showPage(kPage, {});
    tabs->setCurrentIndex(0);
    save(form, folder, "optimizer");
    tabs->setCurrentIndex(1);
    auto* const findings = form.findChild<QAbstractItemView*>(QStringLiteral("lsvFindings"));
    findings->setFocus();
    findings->setCurrentIndex(findings->model()->index(findings->model()->rowCount() - 2, 0));
    save(form, folder, "optimizer-findings");
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        form.resize(form.minimumSizeHint());
        save(form, folder, qPrintable(QStringLiteral("optimizer-small-%1").arg(tab)));
    }
    form.close();
}

void drawExtras(Program& program, const QString& folder) {
    News news(program.services(), program.main().fetcher, starterServer(program.services().paths));
    frmNews newsWindow(news);
    newsWindow.show();
    test::waitUntil([&news] { return !news.state().checking && !news.state().lblTitle.empty(); });
    save(newsWindow, folder, "news");
    newsWindow.resize(newsWindow.minimumSizeHint());
    save(newsWindow, folder, "news-small");
    frmAddIns addIns(program.main().addIns);
    save(addIns, folder, "add-ins");
    addIns.resize(addIns.minimumSizeHint());
    save(addIns, folder, "add-ins-small");
    frmHelp help(program.services().paths.installedGuide, program.services().prompts);
    for (const char* page :
         {"contents.md", "submitting.md#what-each-result-word-means", "first-website.md"}) {
        help.showPage(page);
        help.show();
        save(help, folder, qPrintable(QStringLiteral("help-") + QLatin1String(page).left(5)));
    }
    help.resize(help.minimumSizeHint());
    save(help, folder, "help-small");
}

// The engine builder, from a page of the practice web to what a trial brought.
void drawEngineBuilder(Program& program, test::ScriptedPrompts& prompts, const QString& folder) {
    program.window().findChild<QAction*>(QStringLiteral("mnuToolsItems_9"))->trigger();
    auto& form = *program.window().findChild<frmEngineBuilder*>();
    EngineBuilder& builder = form.builder();
    prompts.inputs.emplace_back("Cove Search");
    builder.New();
    builder.txtEngineURL = "http://cove.example/";
    builder.txtSubmitURL = program.main().catalogue.engine("Beacon Finder").AddURL();
    builder.txtCountry = "US";
    builder.txtMaxTitle = "60";
    frmHTTP& fetcher = program.main().fetcher;
    const auto wait = [&fetcher] {
        test::waitUntil([&] { return !fetcher.isRunning(); });
        QCoreApplication::processEvents();
    };
    builder.getSource();
    wait();
    save(form, folder, "engine-builder-source");
    builder.getFields();
    builder.acceptSuggestion(0);
    save(form, folder, "engine-builder-fields");
    builder.acceptAllSuggestions();
    auto* const tabs = form.findChild<QTabWidget*>(QStringLiteral("SSTab1"));
    tabs->setCurrentIndex(0);
    save(form, folder, "engine-builder");
    builder.chooseCategory(3);
    builder.lsvCategory.setHighlighted(3, true);
    builder.txtEngineCategory = "/business/consulting";
    builder.updateCategory();
    tabs->setCurrentIndex(3);
    save(form, folder, "engine-builder-categories");
    builder.tryIt();
    wait();
    builder.Save();
    save(form, folder, "engine-builder-trial");
    builder.txtSource =
        "<form action=\"http://cove.example/new\" method=\"get\"><input name=\"site_url\">"
        "<input name=\"site_title\"></form>";
    builder.getFields();
    save(form, folder, "engine-builder-changes");
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        form.resize(form.minimumSizeHint());
        save(form, folder, qPrintable(QStringLiteral("engine-builder-small-%1").arg(tab)));
    }
    form.hide();
}

// The walk through a directory, down to where it takes sites.
void drawWalk(Program& program, const QString& folder) {
    CategoryWalk& walk = program.main().categoryWalk;
    const WebsiteFields& fields = program.main().website.fields;
    const auto wait = [&program] {
        test::waitUntil([&] { return !program.main().fetcher.isRunning(); });
        QCoreApplication::processEvents();
    };
    const auto& engines = program.main().catalogue.lists.cboCustomEngines;
    walk.chooseEngine(static_cast<int>(std::find(engines.begin(), engines.end(), "dmoz") - engines.begin()));
    program.main().website.fields.lsvCustomMainCategory.setHighlighted(1, true);
    walk.chooseMainCategory(1);
    walk.openMainCategory(1);
    wait();
    if (fields.lsvCustomSubCategory.count() > 1) walk.openSubCategory(1);
    wait();
    save(program.window(), folder, "website-custom");
}

// An update from the installed starter data of a home that has an older catalogue, and one that fails.
void drawUpdate(Program& program, const test::TestHome& home, test::ScriptedPrompts& prompts,
                const QString& folder) {
    const std::string starter = readFile(RELAY_DATA_FOLDER "/krveng5.dat");
    const std::string older = replaceAll(starter, "Name=Yep IndexNow", "Name=Harbour Finder");
    home.write("data/krveng5.dat", replaceAll(older, "https://yandex.com/", "http://yandex.com/"));
    EngineUpdate& update = program.main().update;
    frmUpdateEngines form(update, prompts);
    form.show();
    save(form, folder, "update-ready");
    update.Start();
    save(form, folder, "update-running");
    test::waitUntil([&] { return !update.isRunning(); });
    save(form, folder, "update-engines");
    form.resize(form.minimumSizeHint());
    save(form, folder, "update-engines-small");
    update.setServer("127.0.0.1:1");
    update.Start();
    test::waitUntil([&] { return !update.isRunning(); });
    save(form, folder, "update-failed");
    form.close();
}

void drawLogin(Program& program, const QString& folder) {
    frmFTPLogin login(program.services(), nullptr);
    const std::pair<const char*, const char*> texts[] = {{"txtHostName", "ftp.roses.example"},
                                                         {"txtUserName", "ada"},
                                                         {"txtPassword", "secret"},
                                                         {"txtRemotePath", "/htdocs"},
                                                         {"txtPublicURL", "http://www.roses.example/"}};
    for (const auto& [name, text] : texts)
        login.findChild<QLineEdit*>(QLatin1String(name))->setText(QLatin1String(text));
    login.findChild<QCheckBox*>(QStringLiteral("chkTLS"))->setChecked(true);
    login.findChild<QCheckBox*>(QStringLiteral("chkSecret"))->setVisible(true);
    login.adjustSize();
    save(login, folder, "ftp-login");
}

// An upload of three files, of which one is empty; then the comparison: one page is new on the web.
void drawFtp(Program& program, const test::TestHome& home, test::ScriptedPrompts& prompts,
             const QString& folder) {
    drawLogin(program, folder);
    std::map<std::string, std::string> web{{"/index.html", readFile(home.path("Site/index.html"))}};
    test::FaultServer pages([&web](test::FaultServer::Peer& peer) {
        const auto page = web.find(peer.path());
        peer.send(page == web.end() ? test::FaultServer::answer(404, "no")
                                    : test::FaultServer::answer(200, page->second));
    });
    test::FtpServer server;
    server.listing =
        "drwxr-xr-x 2 0 0 4096 Apr 01 12:30 pictures\r\n-rw-r--r-- 1 0 0 201 Apr 01 12:31 index.html\r\n"
        "-rw-r--r-- 1 0 0 1840 Apr 01 12:31 roses.css\r\n";
    home.write("Site/draft.html", "");
    FtpLogin login;
    login.Host = server.host();
    login.Username = "ada";
    login.PublicURL = pages.url("/");
    auto* const form = new frmFTPClient(program.services(), program.main().fetcher, nullptr);
    form->show();
    form->resize(1000, 700);
    save(*form, folder, "ftp-new");
    FtpClient& client = form->client();
    form->local().openFolder(home.path("Site"));
    prompts.answers = {true};
    client.btnConnect_Click(login);
    test::waitUntil([&] { return !client.isBusy() && client.lsvRemote.count() > 1; });
    Rows& files = form->local().lsvDirs;
    for (int row = 0; row < files.count(); ++row)
        files.setHighlighted(row, files.at(row).text.ends_with(".html"));
    client.btnSendFile_Click(form->local());
    test::waitUntil([&] { return !client.isBusy(); });
    const QScrollBar* const bar =
        form->findChild<QAbstractItemView*>(QStringLiteral("List1"))->verticalScrollBar();
    test::waitUntil([&] { return bar->value() == bar->maximum(); });
    save(*form, folder, "ftp-window");
    web["/care.html"] = readFile(home.path("Site/care.html"));
    web["/climbing.html"] = "Something else";
    client.compareWithWeb();
    test::waitUntil([&] { return !client.compare()->isRunning(); });
    save(*form, folder, "ftp-web");
    form->resize(form->minimumSizeHint());
    save(*form, folder, "ftp-small");
    form->close();
    prompts.shown.clear();
}

void drawDialogs(Program& program, test::ScriptedPrompts& prompts, const QString& folder) {
    frmPreference preference(program.services());
    auto* const tabs = preference.findChild<QTabWidget*>(QStringLiteral("SSTab1"));
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        save(preference, folder, qPrintable(QStringLiteral("preference-%1").arg(tab)));
    }
    Rows urls;
    frmAddURL addURL(urls, prompts, "/usr/share");
    addURL.show();
    const auto* const folders = addURL.findChild<QTreeView*>(QStringLiteral("Dir1"));
    test::waitUntil([&] { return folders->model()->rowCount(folders->currentIndex()) > 1; });
    save(addURL, folder, "add-url");
    drawExtras(program, folder);
    frmAbout about;
    save(about, folder, "about");
    frmSplash splash;
    save(splash, folder, "splash");
}

// The wizard's pages, on the practice web.
void drawSubmission(Program& program, const QString& folder) {
    program.main().catalogue.selection.EngineSelect(true);
    frmSubmit wizard(program.services(), program.main().catalogue, {}, &program.window());
    const auto push = [&wizard](const char* button) {
        wizard.findChild<QPushButton*>(QString::fromLatin1(button))->click();
        QCoreApplication::processEvents();
    };
    wizard.show();
    save(wizard, folder, "submit-1");
    push("cmdNext");
    save(wizard, folder, "submit-2");
    push("cmdStart");
    save(wizard, folder, "submit-3-ready");
    int ended = 0;
    QObject::connect(&wizard.controller(), &SubmissionController::engineEnded, &wizard, [&] { ++ended; });
    push("cmdSubmit");
    test::waitUntil([&] { return ended >= 150; });
    test::waitUntil([] { return true; });
    save(wizard, folder, "submit-3");
    test::waitUntil([&] { return !wizard.controller().isRunning(); });
    test::waitUntil([] { return true; });
    save(wizard, folder, "submit-4");
    frmPreview preview(program.services(), program.main().catalogue,
                       {{"Roses", program.services().paths.inApp("Projects/Roses.kws")}}, &wizard);
    preview.chooseEngine("Beacon Finder");
    save(preview, folder, "submit-preview");
}

// Readings of six weeks, with some days without one.
void fillHistory(HistoryStore& history, const std::vector<std::string>& sites,
                 const std::vector<RankEngine>& engines) {
    const QDateTime first(QDate(2026, 4, 1), QTime(9, 0));
    for (int day = 0; day < 42; ++day) {
        if (day % 12 == 7 || (day > 20 && day < 25)) continue;
        HistoryReading reading{"shop", "paper shop", first.addDays(day).addSecs(60), first, {}};
        for (std::size_t engine = 0; engine < engines.size(); ++engine) {
            const int wave = static_cast<int>(engine) * 5;
            const int drift = (day * (static_cast<int>(engine) + 2)) / 9 - (day * day) / 60;
            const int noise = (day * 7 + static_cast<int>(engine) * 13) % 5 - 2;
            const int best = std::max(1, 38 - wave - drift + noise);
            const bool changed = engine == 7 && day > 30;
            const RankState state = engine == 6   ? RankState::NothingFound
                                    : changed     ? RankState::NoResultList
                                    : engine == 8 ? RankState::NoResultPage
                                    : best > 36   ? RankState::NotFound
                                                  : RankState::Found;
            for (const std::string& site : sites)
                reading.places.push_back(
                    {engines[engine].EngineName, site, state, state == RankState::Found ? best : 0,
                     state == RankState::Found ? std::to_string(best) : "", 45, first.addDays(day)});
        }
        history.add(reading);
    }
}

// A run on the practice web without the engine that stalls, and the history.
void drawRanking(Program& program, test::ScriptedPrompts& prompts, const QString& folder) {
    program.services().preference.PromptConnection = 0;
    frmRanking form(program.services());
    clsRanking& ranking = form.ranking();
    save(form, folder, "ranking-empty");
    ranking.state().setup = {
        "shop", {"www.site-15.example", "www.site-38.example"}, "paper shop", RankLimit::Pages, "5"};
    ranking.saveProfile("shop");
    ranking.chkSelectAll_Click(true);
    ranking.state().lsvRankingEngines.setChecked(5, false);
    form.show();
    prompts.answers = {true, true};
    ranking.Command1_0();
    test::waitUntil([&] { return !ranking.analysis().empty() && ranking.state().Command1_0Enabled; });
    save(form, folder, "ranking");
    std::filesystem::remove(ranking.history().file());
    fillHistory(ranking.history(), ranking.state().setup.sites, ranking.engines());
    auto* const tabs = form.findChild<QTabWidget*>(QStringLiteral("SSTab1"));
    tabs->setCurrentIndex(1);
    save(form, folder, "ranking-reports");
    tabs->setCurrentIndex(2);
    QCoreApplication::processEvents();
    save(form, folder, "ranking-history");
    form.resize(form.minimumSizeHint());
    QCoreApplication::processEvents();
    save(form, folder, "ranking-small");
    frmSearch search(program.services());
    auto* const websites = search.findChild<QComboBox*>(QStringLiteral("cboWebProfile"));
    websites->setCurrentIndex(0);
    Q_EMIT websites->activated(0);
    save(search, folder, "search");
}

// The keyword builder on the practice web, each of its pages.
void drawKeywords(Program& program, test::ScriptedPrompts& prompts, const QString& folder) {
    frmKeywordBuilder form(program.services(), program.main().fetcher,
                           {[&program] { return program.services().paths.inApp("Projects/Roses.kws"); },
                            {},
                            {},
                            [](const std::vector<std::string>&) {}});
    const auto press = [&form](const char* button) {
        form.findChild<QPushButton*>(QLatin1String(button))->click();
        test::waitUntil([&form] { return !form.builder().isRunning() && !form.words().isRunning(); });
    };
    form.load();
    form.show();
    save(form, folder, "keywords-empty");
    form.findChild<QRadioButton*>(QStringLiteral("Option1_0"))->setChecked(true);
    form.findChild<QComboBox*>(QStringLiteral("cboKeywords"))->setEditText(QStringLiteral("writing paper"));
    press("Command1_0");
    save(form, folder, "keywords");
    auto* const tabs = form.findChild<QTabWidget*>(QStringLiteral("SSTab1"));
    tabs->setCurrentIndex(1);
    form.findChild<QPlainTextEdit*>(QStringLiteral("txtFirst"))->setPlainText(QStringLiteral("red\nblue"));
    form.findChild<QPlainTextEdit*>(QStringLiteral("txtSecond"))
        ->setPlainText(QStringLiteral("garden chairs\ngarden tables"));
    press("cmdCombine");
    save(form, folder, "keywords-combine");
    tabs->setCurrentIndex(2);
    press("cmdCount");
    save(form, folder, "keywords-count");
    tabs->setCurrentIndex(3);
    save(form, folder, "keywords-send");
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        form.resize(form.minimumSizeHint());
        save(form, folder, qPrintable(QStringLiteral("keywords-small-%1").arg(tab)));
    }
    prompts.shown.clear();
}

void drawWindow(Program& program, const QString& folder) {
    frmMain& window = program.window();
    window.resize(1280, 800);
    const auto trigger = [&window](const char* command) {
        window.findChild<QAction*>(QString::fromLatin1(command), Qt::FindDirectChildrenOnly)->trigger();
    };
    Workspace& workspace = program.main().workspace;
    workspace.nodeClick(workspace.tree().root());
    save(window, folder, "root");
    workspace.nodeClick(*workspace.tree().root().children.at(0));
    save(window, folder, "project");
    workspace.nodeClick(*workspace.tree().root().children.at(0)->children.at(1));
    window.findChild<QTabWidget*>(QStringLiteral("SSTab1"))->setCurrentIndex(1);
    save(window, folder, "website-empty-urls");
    workspace.nodeClick(*workspace.tree().root().children.at(0)->children.at(0));
    auto* const tabs = window.findChild<QTabWidget*>(QStringLiteral("SSTab1"));
    const char* const names[] = {"website-info", "website-urls", "website-category", "website-contact",
                                 "website-reports"};
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        save(window, folder, names[tab]);
    }
    tabs->setCurrentIndex(2);
    window.findChild<QTabWidget*>(QStringLiteral("tabCategory"))->setCurrentIndex(1);
    save(window, folder, "website-custom-empty");
    drawWalk(program, folder);
    tabs->setCurrentIndex(0);
    trigger("Engines");
    save(window, folder, "engines-empty");
    program.main().catalogue.selection.EngineSelectByType("DIR", true);
    save(window, folder, "engines");
}
}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    applyAppearance(application, qEnvironmentVariable("KORVEL_RELAY_PALETTE"));
    const QString folder = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral(".");
    QDir().mkpath(folder);
    const test::TestHome home;
    PracticeWeb practice;
    practice.describeEngines(readFile(RELAY_DATA_FOLDER "/practice/krveng5.dat"),
                             readFile(RELAY_DATA_FOLDER "/practice/catkws.dat"));
    practice.start();
    fillHome(home, practice.address());
    test::ScriptedPrompts prompts;
    const test::FixedClock clock;
    Paths paths = home.paths();
    paths.installedData = RELAY_DATA_FOLDER;
    Program program(paths, {}, clock, prompts);
    program.start();
    drawWindow(program, folder);
    drawSubmission(program, folder);
    drawDialogs(program, prompts, folder);
    drawMetaTags(program, home, folder);
    drawDoorway(program, home, folder);
    drawOptimizer(program, folder);
    drawRanking(program, prompts, folder);
    drawKeywords(program, prompts, folder);
    drawEngineBuilder(program, prompts, folder);
    drawUpdate(program, home, prompts, folder);
    drawFtp(program, home, prompts, folder);
    for (const auto& shown : prompts.shown) qWarning("%s: %s", shown.title.c_str(), shown.text.c_str());
    return 0;
}
