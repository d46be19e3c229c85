// SPDX-License-Identifier: GPL-3.0-or-later
//
// Every file under conversations/ is a conversation with a server, played without sockets (see
// support/Transcript.h). What the server does and what the program asks for are commands:
//   begin USER PASSWORD [tls], server LINE, packet BYTES, encrypted, closed
//   send COMMAND BINARY [FILE], path PATH, passive MODE, foreign, ipv6, give-up
//   connected, accepted, refused WORDS, data BYTES, data-end, broke WORDS, pull (all of the file being sent)
//   state
// Their results: "> " a line on the control connection, "* " a message, "+ " a line of a listing, "log: " one
// of the log, "[...]" what is asked of the sockets, "(...)" an event.
#include "core/FileStore.h"
#include "core/Text.h"
#include "ftp/FtpCompare.h"
#include "ftp/FtpHost.h"
#include "ftp/FtpListing.h"
#include "ftp/IndexNowKeyFile.h"
#include "ftp/modFTP.h"
#include "support/CaseTable.h"
#include "support/Transcript.h"

#include <array>
#include <filesystem>
#include <gtest/gtest.h>

namespace relay::test {

namespace {

std::string joinedByBlanks(const Arguments& words) {
    std::string all;
    for (const std::string& word : words) all += (all.empty() ? "" : " ") + word;
    return all;
}

std::vector<std::string> conversations() {
    std::vector<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(TEST_FOLDER "/conversations"))
        names.push_back(file.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

class ConversationTest : public testing::TestWithParam<std::string>, private FtpWire, private FtpWatcher {
  protected:
    ConversationTest() {
        const auto on = [this](const char* name, std::function<void(const Arguments&)> does) {
            m_transcript.on(name, std::move(does));
        };
        on("begin", [this](auto& a) { m_ftp.begin(a.at(0), a.at(1), a.size() > 2); });
        on("server", [this](auto& a) { m_ftp.controlReceived(joinedByBlanks(a) + "\r\n"); });
        on("packet", [this](auto& a) { m_ftp.controlReceived(a.at(0)); });
        on("encrypted", [this](auto&) { m_ftp.controlEncrypted(); });
        on("closed", [this](auto&) { m_ftp.controlClosed(); });
        on("send", [this](auto& a) {
            m_ftp.SendFTPCommand(a.at(0), static_cast<std::int16_t>(std::stoi(a.at(1))),
                                 a.size() > 2 ? a[2] : "");
        });
        on("path", [this](auto& a) { m_ftp.requestPath(a.at(0)); });
        on("passive",
           [this](auto& a) { m_ftp.setPassiveMode(static_cast<std::int16_t>(std::stoi(a.at(0)))); });
        on("foreign", [this](auto&) { m_ftp.setAllowForeignDataHost(true); });
        on("ipv6", [this](auto&) { m_server = "::1"; });
        on("give-up", [this](auto&) { m_ftp.giveUp(kFtpNoReply); });
        on("connected", [this](auto&) { m_ftp.dataConnected(); });
        on("accepted", [this](auto&) { m_ftp.dataAccepted(7); });
        on("refused", [this](auto& a) { m_ftp.dataFailed(joinedByBlanks(a)); });
        on("broke", [this](auto& a) { m_ftp.dataError(joinedByBlanks(a)); });
        on("data", [this](auto& a) { m_ftp.dataReceived(a.at(0)); });
        on("data-end", [this](auto&) { m_ftp.dataClosed(); });
        on("pull", [this](auto&) { pull(); });
        on("state", [this](auto&) { tellState(); });
    }

    TestHome m_home;
    Transcript m_transcript{m_home};

  private:
    void tell(std::string_view mark, std::string_view text) {
        m_transcript.out.append(mark).append(text).append("\n");
    }
    void pull() {
        std::string bytes;
        for (std::string_view block = m_ftp.nextBlock(); !block.empty(); block = m_ftp.nextBlock()) {
            EXPECT_LE(block.size(), FtpFileSource::kChunk * FtpFileSource::kReads * 2);
            bytes += block;
        }
        tell("[bytes] ",
             bytes.size() > 60 ? std::to_string(bytes.size()) : replaceAll(bytes, "\r\n", "<CRLF>"));
        if (m_ftp.isSending()) m_ftp.fileSent();
    }
    void tellState() {
        const FtpState& state = m_ftp.state();
        tell("", "command " + state.CurrentCommand + ", pending " + state.PendingCommand + ", path " +
                     state.RemotePath + ", error " + state.LastError);
        tell("", "binary " + std::to_string(state.RequestedBinary) + ", type " +
                     std::to_string(state.CurrentType) + ", reply " + std::to_string(state.ReplyCode) +
                     ", connected " + std::to_string(state.Connected) + ", bytes " +
                     std::to_string(state.DataBytes) + (m_ftp.wholeFileSent() ? ", sent" : ""));
    }

    // FtpWire
    void sendControl(std::string_view line) override {
        EXPECT_TRUE(line.ends_with("\r\n"));
        tell("> ", line.substr(0, line.size() - 2));
    }
    void closeControl() override { tell("[close control]", ""); }
    void encryptControl() override { tell("[encrypt control]", ""); }
    std::string serverAddress() const override { return m_server; }
    bool isIPv6() const override { return m_server.find(':') != npos; }
    FtpEndpoint listenData() override {
        tell("[listen]", "");
        return {m_server, 40001};
    }
    void connectData(const FtpEndpoint& where) override {
        tell("[connect] ", where.address + " " + std::to_string(where.port));
    }
    void beginSending() override { tell("[send]", ""); }
    void closeData() override { tell("[close data]", ""); }
    void resetData() override { tell("[reset data]", ""); }

    // FtpWatcher
    void DisplayMessage(std::string_view text) override { tell("* ", text); }
    void trace(std::string_view text) override {
        if (text != "CloseDataConnection") tell("log: ", text);
    }
    void addRemoteDir(std::string_view line) override { tell("+ ", line); }
    void happened(FtpEvent event) override {
        constexpr std::array kNames = {"LoggedIn",    "LoginFailed", "CommandEnded", "Released",
                                       "PathChanged", "FollowPath",  "SendingBegan", "Disconnected"};
        tell("", std::string("(") + kNames.at(static_cast<std::size_t>(event)) + ")");
    }

    std::string m_server = "127.0.0.1";
    modFTP m_ftp{*this, *this};
};

}  // namespace

TEST_P(ConversationTest, GoesAsItsTranscriptSays) {
    m_transcript.play(std::string(TEST_FOLDER "/conversations/") + GetParam());
}

TEST(FtpTextsTest, ReadsListingsHostsAndPaths) {
    const auto entryText = [](const std::optional<FtpEntry>& entry) {
        return !entry ? std::string()
                      : joined({entry->path, entry->type, std::to_string(entry->size), entry->date,
                                entry->name});
    };
    playCases(TEST_FOLDER "/cases/texts",
              {{"list", [&](auto& in) { return entryText(readListLine(in[0], "/w")); }},
               {"mlsd", [&](auto& in) { return entryText(readMlsdLine(in[0], "/w")); }},
               {"up", [](auto& in) { return GetUpDir(in[0]); }},
               {"host",
                [](auto& in) {
                    const FtpHost host = parseFtpHost(in[0]);
                    return host.name + " " + std::to_string(host.port) + (host.isAddress ? " address" : "");
                }},
               {"public", [](auto& in) { return publicAddress(in[0], in[1], in[2]).value_or("none"); }},
               {"key", [](auto& in) { return indexNowKeyProblem(in[0]); }}});
}

INSTANTIATE_TEST_SUITE_P(Files, ConversationTest, testing::ValuesIn(conversations()),
                         [](const auto& named) { return named.param; });

}  // namespace relay::test
