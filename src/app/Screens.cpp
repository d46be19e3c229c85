// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Screens.h"

#include "app/EngineTrial.h"
#include "app/clsMain.h"
#include "app/frmAbout.h"
#include "app/frmPreference.h"
#include "catalogue/Catalogue.h"
#include "catalogue/frmEngineBuilder.h"
#include "catalogue/frmUpdateEngines.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Trap.h"
#include "extras/News.h"
#include "extras/frmAddIns.h"
#include "extras/frmNews.h"
#include "ftp/KeychainSecrets.h"
#include "ftp/frmFTPClient.h"
#include "pagetools/frmDoorway.h"
#include "pagetools/frmMetaTag.h"
#include "pagetools/frmOptimizer.h"
#include "practice/StarterServer.h"
#include "projects/UrlList.h"
#include "projects/frmAddURL.h"
#include "projects/frmAddURLFromWeb.h"
#include "ranking/frmKeywordBuilder.h"
#include "ranking/frmRanking.h"
#include "ranking/frmSearch.h"
#include "submission/frmSubmit.h"

#include <QLocale>

#include <memory>
#include <optional>

namespace relay {

namespace {

void bringUp(QWidget& form) {
    form.show();
    form.raise();
    form.activateWindow();
}

// Gives the pages of a purpose to the form's work as long as the form lives, and shows the form whether the
// fetcher runs.
template <class Form, class Work>
void takePages(Form& form, Work& work, std::string_view purpose, frmHTTP& fetcher) {
    fetcher.setConsumer(purpose,
                        {[&work](const FetchReply& reply) {
                             work.showPage(reply.isPage() ? reply.text : std::string(), fetchProblem(reply));
                         },
                         [&work](const FetchReply& reply) { work.showPage({}, fetchProblem(reply)); },
                         [&work] { work.showPage({}, "Cancelled"); }});
    QObject::connect(&form, &QObject::destroyed, &fetcher,
                     [&fetcher, purpose] { fetcher.removeConsumer(purpose); });
    QObject::connect(&fetcher, &frmHTTP::runningChanged, &form, &Form::showFetching);
}

// Opens the wizard. The window is disabled until it closes.
void showSubmit(const CommandTarget& target, QWidget* parent, std::optional<CutOffRun> cutOff,
                const std::vector<std::string>& onlyURLs = {}) {
    std::optional<frmSubmit> wizard;
    {
        const BusyPointer busy(target.services.prompts);
        SubmissionOptions options{QLocale()};
        options.linkEngines = target.main.linksEngines;
        wizard.emplace(target.services, target.main.catalogue, std::move(options), parent);
    }
    if (!onlyURLs.empty()) wizard->controller().submitOnly(onlyURLs);
    if (cutOff && !wizard->controller().resume(std::move(*cutOff))) return;
    wizard->exec();
    if (target.main.catalogue.showsEngineHealth())
        trap(target.services.prompts, "Module: showEngineHealth\r\n",
             [&] { target.main.catalogue.showEngineHealth(true); });
    // Reads the new reports into the website's panel.
    target.main.workspace.autoSave();
}

// Not modal, so that the engines for changed pages can be selected beside it. The form deletes itself when it
// is closed.
void showFTPClient(const CommandTarget& target, QWidget* parent) {
    auto* form = parent->findChild<frmFTPClient*>(QString(), Qt::FindDirectChildrenOnly);
    if (form == nullptr) {
        form = new frmFTPClient(target.services, target.main.fetcher, desktopSecrets(), parent);
        QObject::connect(form, &frmFTPClient::submitWanted, parent,
                         [&target, parent, form](const std::vector<std::string>& urls) {
                             if (target.main.readyToSubmit()) {
                                 showSubmit(target, form, std::nullopt, urls);
                             } else {
                                 parent->raise();
                                 parent->activateWindow();
                             }
                         });
    }
    bringUp(*form);
}

// The editor is made at its first use and keeps its folder and texts.
void showMetaTag(const CommandTarget& target, QWidget* parent) {
    static constexpr std::string_view kPurpose = "MetaTagEdit";
    frmHTTP& fetcher = target.main.fetcher;
    auto* form = parent->findChild<frmMetaTag*>(QString(), Qt::FindDirectChildrenOnly);
    if (form == nullptr) {
        form = new frmMetaTag(
            target.services,
            {[&fetcher](const std::string& url) { return fetcher.fetch(kPurpose, url); },
             [&fetcher] { return fetcher.isRunning(kPurpose); }, [&fetcher] { fetcher.Disconnect(); }},
            parent);
        takePages(*form, form->editor(), kPurpose, fetcher);
    }
    form->exec();
}

// Made at its first use; it keeps its fields.
frmDoorway& doorwayForm(const CommandTarget& target, QWidget* parent) {
    auto* form = parent->findChild<frmDoorway*>(QString(), Qt::FindDirectChildrenOnly);
    if (form == nullptr) {
        form = new frmDoorway(target.services, parent);
        QObject::connect(form, &frmDoorway::guideWanted, parent, [&target, form] { target.help(form); });
    }
    return *form;
}

// Not modal, so that pages can be chosen from the list of URLs beside it. The form deletes itself when it is
// closed.
void showOptimizer(const CommandTarget& target, QWidget* parent) {
    auto* form = parent->findChild<frmOptimizer*>(QString(), Qt::FindDirectChildrenOnly);
    if (form == nullptr) form = new frmOptimizer(target.main.optimizer, parent);
    bringUp(*form);
}

// Made at its first use; it keeps its list.
void showKeywordBuilder(const CommandTarget& target, QWidget* parent) {
    auto* form = parent->findChild<frmKeywordBuilder*>(QString(), Qt::FindDirectChildrenOnly);
    if (form == nullptr) {
        Workspace& workspace = target.main.workspace;
        form = new frmKeywordBuilder(target.services, target.main.fetcher,
                                     {[&workspace] { return workspace.currentNode()->file; },
                                      [&workspace] { return workspace.autoSaveToLeave(); },
                                      // Saving reads a file that was changed.
                                      [&workspace] { workspace.autoSave(); },
                                      [&target, parent](const std::vector<std::string>& keywords) {
                                          frmDoorway& doorways = doorwayForm(target, parent);
                                          if (doorways.takeKeywords(keywords)) doorways.exec();
                                      }},
                                     parent);
    }
    form->load();
    form->exec();
}

void showNews(const CommandTarget& target, QWidget* parent) {
    News news(target.services, target.main.fetcher, starterServer(target.services.paths));
    frmNews(news, parent).exec();
}

void showAddIns(const CommandTarget& target, QWidget* parent) {
    AddIns& addIns = target.main.addIns;
    frmAddIns manager(addIns, parent);
    if (manager.exec() == QDialog::Accepted && !manager.list().empty()) addIns.LoadAddIns(manager.list());
}

// The builder is made at its first use; each opening reads the stored engines anew.
void showEngineBuilder(const CommandTarget& target, QWidget* parent) {
    static constexpr std::string_view kPurpose = "EngineBuilder";
    clsMain& main = target.main;
    frmHTTP& fetcher = main.fetcher;
    auto* form = parent->findChild<frmEngineBuilder*>(QString(), Qt::FindDirectChildrenOnly);
    if (form == nullptr) {
        const auto builder = std::make_shared<EngineBuilder*>();
        const auto trial = std::make_shared<EngineTrial>(
            target.services, main.catalogue, fetcher,
            [builder](const TrialResult& result) { (*builder)->showTrial(result); });
        form = new frmEngineBuilder(
            target.services, main.catalogue,
            {{[&fetcher](const std::string& url) { return fetcher.fetch(kPurpose, url); },
              [trial, &main](const CustomEngineRecord& record) {
                  return trial->start(record, main.workspace.currentNode()->file);
              },
              [&target, parent] {
                  auto* const shown =
                      parent->findChild<frmEngineBuilder*>(QString(), Qt::FindDirectChildrenOnly);
                  return shown != nullptr && target.guide(*shown);
              }},
             [&fetcher] { return fetcher.isRunning(); },
             [&fetcher] { fetcher.Disconnect(); }},
            parent);
        *builder = &form->builder();
        takePages(*form, form->builder(), kPurpose, fetcher);
    }
    form->open();
}

// The screens that commands open.
struct Screen final {
    std::string_view name;
    void (*show)(const CommandTarget& target, QWidget* parent);
};
constexpr Screen kScreens[] = {
    {"frmMetaTag", showMetaTag},
    {"frmDoorway", [](const CommandTarget& target, QWidget* parent) { doorwayForm(target, parent).exec(); }},
    {"frmOptimizer", showOptimizer},
    {"frmFTPClient", showFTPClient},
    {"frmNews", showNews},
    {"frmAddIns", showAddIns},
    {"frmEngineBuilder", showEngineBuilder},
    {"frmAbout", [](const CommandTarget&, QWidget* parent) { frmAbout(parent).exec(); }},
    {"frmPreference",
     [](const CommandTarget& target, QWidget* parent) {
         frmPreference(target.services, frmPreference::Shown::ByCommand, parent).exec();
     }},
    {"frmUpdateEngines",
     [](const CommandTarget& target, QWidget* parent) {
         frmUpdateEngines(target.main.update, target.services.prompts, {}, parent).exec();
     }},
    {"frmAddURL",
     [](const CommandTarget& target, QWidget* parent) {
         frmAddURL(target.main.website.fields.lsvSiteURLs, target.services.prompts,
                   target.services.paths.AppPath, parent)
             .exec();
     }},
    {"frmRanking",
     [](const CommandTarget& target, QWidget* parent) { frmRanking(target.services, parent).exec(); }},
    {"frmKeywordBuilder", showKeywordBuilder},
    {"frmSearch",
     [](const CommandTarget& target, QWidget* parent) { frmSearch(target.services, parent).exec(); }},
    {"frmSubmit",
     [](const CommandTarget& target, QWidget* parent) { showSubmit(target, parent, std::nullopt); }},
    {"frmAddURLFromWeb",
     [](const CommandTarget& target, QWidget* parent) {
         Rows& urls = target.main.website.fields.lsvSiteURLs;
         frmAddURLFromWeb(urls, target.main.fetcher, target.services.prompts, getFirstSelectedItem(urls),
                          parent)
             .exec();
     }},
};

}  // namespace

void showScreen(std::string_view name, const CommandTarget& target, QWidget* parent) {
    for (const Screen& screen : kScreens)
        if (screen.name == name) screen.show(target, parent);
}

void closeScreens(const QWidget& parent) {
    if (auto* const form = parent.findChild<frmFTPClient*>(QString(), Qt::FindDirectChildrenOnly))
        form->close();
    if (auto* const form = parent.findChild<frmOptimizer*>(QString(), Qt::FindDirectChildrenOnly))
        form->close();
}

void continueSubmission(CutOffRun run, const CommandTarget& target, QWidget* parent) {
    showSubmit(target, parent, std::move(run));
}

}  // namespace relay
