// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowTest.h"
#include "ftp/frmFTPClient.h"
#include "ftp/frmFTPLogin.h"
#include "submission/frmSubmit.h"
#include "support/FaultServer.h"
#include "support/FtpServer.h"
#include "widgets/ListView.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>

#include <gmock/gmock.h>

namespace relay::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// The uploader over the window, with a scripted server.
class FtpWindowTest : public WindowTest {
  protected:
    FtpWindowTest() {
        settleHome(kSmallCatalogue);
        server.listing =
            "drwxr-xr-x 2 0 0 4096 Jan 01 10:00 img\r\n-rw-r--r-- 1 0 0 5 Jan 02 10:00 a.html\r\n";
    }

    frmFTPClient* form() { return window().findChild<frmFTPClient*>(QString(), Qt::FindDirectChildrenOnly); }
    void open() {
        command("mnuToolsItems_7");
        ASSERT_NE(form(), nullptr);
        form()->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(form()));
    }
    template <typename Widget = QPushButton>
    Widget& part(const char* name) {
        return control<Widget>(*form(), name);
    }
    void push(const char* button) { QTest::mouseClick(&part(button), Qt::LeftButton); }
    bool idle() {
        return waitUntil(
            [this] { return !form()->client().isBusy() && !form()->client().compare()->isRunning(); });
    }
    static void fill(QWidget& dialog, const char* field, const std::string& text) {
        auto& edit = control<QLineEdit>(dialog, field);
        edit.setFocus();
        QTest::keySequence(&edit, QKeySequence::SelectAll);
        QTest::keyClicks(&edit, QString::fromStdString(text));
    }
    // Connects with the login form; ends when the folder is listed.
    void logIn(const std::string& publicUrl = {}) {
        whenModal([&](QWidget& dialog) {
            EXPECT_EQ(control<QLineEdit>(dialog, "txtHostName").text(),
                      QStringLiteral("ftp.yourdomain.example"));
            fill(dialog, "txtHostName", server.host());
            fill(dialog, "txtUserName", "ada");
            fill(dialog, "txtPassword", "secret1");
            fill(dialog, "txtPublicURL", publicUrl);
            QTest::keyClick(&control<QLineEdit>(dialog, "txtRemotePath"), Qt::Key_Return);
        });
        prompts.answers = {true};
        push("btnConnect");
        ASSERT_TRUE(waitUntil(
            [this] { return !form()->client().isBusy() && form()->client().lsvRemote.count() > 1; }));
    }
    // Return on the row.
    void activate(const char* name, std::string_view text) {
        auto& list = part<ListView>(name);
        for (int row = 0; row < list.rows()->count(); ++row)
            if (list.rows()->at(row).text == text) list.setCurrentIndex(list.model()->index(row, 0));
        QTest::keyClick(&list, Qt::Key_Return);
        QCoreApplication::processEvents();
    }

    FtpServer server;
};

TEST_F(FtpWindowTest, AnUploadIsComparedAndExactlyTheChangedPagesAreSubmitted) {
    std::map<std::string, std::string> web{{"/old.html", "hello"}};
    FaultServer pages([&web](FaultServer::Peer& peer) {
        const auto page = web.find(peer.path());
        peer.send(page == web.end() ? FaultServer::answer(404, "no")
                                    : FaultServer::answer(200, page->second));
    });
    home.write("project.kwj", "[Shop]\r\nLast=2\r\n1=Other|" +
                                  home.writeWebsite("Projects/Other.kws", {"http://other.example/"}) +
                                  "\r\n2=Home|" + home.writeWebsite("Projects/Home.kws", {pages.url("/")}) +
                                  "\r\n");
    for (const char* name : {"site/new.html", "site/old.html"}) home.write(name, "hello");
    home.write("site/empty.html", "");
    start();
    clickNode("Shop/Home");
    open();
    form()->local().openFolder(home.path("site"));
    push("btnSendFile");
    EXPECT_EQ(prompts.last().text, "FTP Connection seems closed, Please re-connect and try again !");
    logIn(pages.url("/"));
    EXPECT_EQ(part("btnConnect").text(), QStringLiteral("D&isconnect"));
    EXPECT_THAT(missedByTab(*form()), testing::IsEmpty());
    EXPECT_THAT(part<QLabel>("lblState").text().toStdString(), HasSubstr(", not encrypted"));

    QTest::keySequence(&part<ListView>("lsvDirs"), QKeySequence::SelectAll);
    push("btnSendFile");
    EXPECT_FALSE(part("btnSendFile").isEnabled());
    ASSERT_TRUE(idle());
    EXPECT_EQ(server.files.size(), 2U);
    EXPECT_EQ(part<QProgressBar>("prgQueue").value(), 1000);
    EXPECT_TRUE(part("cmdRetry").isEnabled());
    EXPECT_FALSE(part("cmdSubmit").isEnabled());
    web["/new.html"] = "hello";
    push("cmdCompare");
    ASSERT_TRUE(idle());
    ASSERT_TRUE(part("cmdSubmit").isEnabled());

    std::vector<std::string> submitted;
    const auto lookAtWizard = [&] {
        whenModal([&](QWidget& dialog) {
            auto& wizard = dynamic_cast<frmSubmit&>(dialog);
            QTest::mouseClick(&control<QPushButton>(wizard, "cmdNext"), Qt::LeftButton);
            EXPECT_EQ(control<QLabel>(wizard, "lblNumOfURLs").text(), QStringLiteral("1"));
            QTest::mouseClick(&control<QPushButton>(wizard, "cmdStart"), Qt::LeftButton);
            const Rows& urls = wizard.controller().state().lsvSiteSubmitting;
            for (int row = 0; row < urls.count(); ++row)
                submitted.push_back(
                    std::string(urls.at(row).text).append(" of ").append(urls.at(row).subItems[0]));
            wizard.close();
        });
    };
    // Without engines the window says so, and the engine screen opens beside the uploader.
    push("cmdSubmit");
    EXPECT_THAT(prompts.last().text, testing::StartsWith("There is no engine selected."));
    program().main().catalogue.selection.EngineSelectByType("ENG", true);
    lookAtWizard();
    push("cmdSubmit");
    EXPECT_THAT(submitted, ElementsAre(pages.url("/new.html") + " of Home"));

    home.write("site/empty.html", "full");
    push("cmdRetry");
    ASSERT_TRUE(idle());
    EXPECT_EQ(server.files.size(), 3U);
    EXPECT_FALSE(part("cmdRetry").isEnabled());
    quit();
}

TEST_F(FtpWindowTest, RowsAndThePathLeadToFoldersAndEscapeStopsBeforeItCloses) {
    start();
    open();
    QTest::keyClick(&part<QLineEdit>("txtRemotePath"), Qt::Key_Return);
    EXPECT_THAT(prompts.last().text, HasSubstr("seems closed"));
    logIn();
    activate("lsvRemote", " a.html");
    EXPECT_FALSE(form()->client().isBusy());
    const auto lastFolder = [this] { return form()->client().txtRemotePath(); };
    activate("lsvRemote", "img");
    ASSERT_TRUE(waitUntil([&] { return lastFolder() == "/htdocs/img"; }) && idle());
    EXPECT_EQ(part<QLineEdit>("txtRemotePath").text(), QStringLiteral("/htdocs/img"));
    activate("lsvRemote", "\xC2\xA0Up");
    ASSERT_TRUE(waitUntil([&] { return lastFolder() == "/htdocs"; }) && idle());
    fill(*form(), "txtRemotePath", "/pub");
    QTest::keyClick(&part<QLineEdit>("txtRemotePath"), Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return lastFolder() == "/pub"; }) && idle());

    server.silentData = true;
    home.write("site/a.html", std::string(5000000, 'x'));
    form()->local().openFolder(home.path("site"));
    activate("lsvDirs", " a.html");
    ASSERT_TRUE(waitUntil([this] { return form()->client().progress().fileSent > 0; }));
    QTest::keyClick(form(), Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([this] { return !form()->client().isSending(); }));
    EXPECT_TRUE(form()->isVisible());
    EXPECT_EQ(form()->client().ended().at(0).problem, "Stopped");
    // Closing ends everything at once.
    form()->client().retryFailed();
    push("btnClose");
    ASSERT_TRUE(waitUntil([this] { return form() == nullptr; }));
    EXPECT_EQ(prompts.busyDepth, 0);
}

TEST_F(FtpWindowTest, ClosingTheWindowOrTheProgramEndsEveryStep) {
    start();
    const std::vector<FtpUpload> files{{home.write("site/a.html", std::string(5000000, 'x')), "a.html"}};
    FtpLogin login;
    login.Host = server.host();
    login.Username = "ada";
    for (const std::string step : {"USER", "PASS", "PWD", "CWD", "PASV", "LIST", "TYPE", "STOR", "QUIT"}) {
        SCOPED_TRACE(step);
        bool reached = false;
        server.lie = [&](const std::string& got) -> std::optional<std::string> {
            if (!got.starts_with(step)) return std::nullopt;
            reached = true;
            return "";
        };
        open();
        FtpClient& client = form()->client();
        client.FTPConnect(login);
        ASSERT_TRUE(waitUntil([&] { return reached || (!client.isBusy() && client.lsvRemote.count() > 1); }));
        if (!reached) step == "QUIT" ? client.Disconnect() : client.sendFiles(files);
        ASSERT_TRUE(waitUntil([&] { return reached; }));
        if (step == "QUIT") break;
        push("btnClose");
        ASSERT_TRUE(waitUntil([this] { return form() == nullptr; }));
        EXPECT_EQ(prompts.busyDepth, 0);
    }
    quit();
}

// Keeps secrets in memory and answers a moment later, as a desktop does.
class Secrets final : public SecretStore {
  public:
    std::map<std::string, std::string> kept;

    bool isAvailable() const override { return true; }
    void read(const std::string& name, std::function<void(std::string, std::string)> done) override {
        QTimer::singleShot(0, qApp, [this, name, done] { done(kept[name], ""); });
    }
    void write(const std::string& name, const std::string& secret,
               std::function<void(std::string)> done) override {
        kept[name] = secret;
        done("");
    }
    void remove(const std::string& name, std::function<void(std::string)> done) override {
        kept.erase(name);
        done("");
    }
};

TEST_F(FtpWindowTest, TheLoginStaysOpenUntilItCanBeUsedAndOffersTheSecretService) {
    start();
    const Services& services = program().services();
    EXPECT_TRUE(control<QCheckBox>(frmFTPLogin(services, nullptr), "chkSecret").isHidden());
    Secrets secrets;
    frmFTPLogin first(services, &secrets);
    whenModal([&](QWidget& dialog) {
        fill(dialog, "txtHostName", "host:99999");
        fill(dialog, "txtUserName", "ada");
        fill(dialog, "txtPassword", "secret1");
        QTest::keyClick(&control<QCheckBox>(dialog, "chkSecret"), Qt::Key_Space);
        QTest::keyClick(&control<QLineEdit>(dialog, "txtPassword"), Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_THAT(prompts.last().text, HasSubstr("port"));
        fill(dialog, "txtHostName", "host:2121");
        QTest::keyClick(&control<QLineEdit>(dialog, "txtHostName"), Qt::Key_Return);
    });
    const auto login = first.ask();
    ASSERT_TRUE(login);
    EXPECT_EQ(login->Password, "secret1");
    EXPECT_EQ(secrets.kept.size(), 1U);
    EXPECT_EQ(FtpLoginStore(services, &secrets).read().Password, "");
    frmFTPLogin second(services, &secrets);
    auto& password = control<QLineEdit>(second, "txtPassword");
    EXPECT_TRUE(waitUntil([&] { return password.text() == QStringLiteral("secret1"); }));
    whenModal([](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_FALSE(second.ask());
}

}  // namespace
}  // namespace relay::test
