// SPDX-License-Identifier: GPL-3.0-or-later
#include "practice/StarterServer.h"

#include "catalogue/UpdateFiles.h"
#include "core/Failure.h"
#include "core/FileStore.h"

namespace relay {

UpdateTexts readUpdateTexts(const std::string& installedData, const std::string& engines) {
    if (installedData.empty())
        throw Failure(
            "The files installed with the program are missing. Set KORVEL_RELAY_DATA to their folder.");
    const std::string folder = installedData + "/";
    UpdateTexts texts;
    for (const UpdateFile& file : kUpdateFiles) {
        const std::string sub = file.ofEngines && !engines.empty() ? engines + "/" : "";
        texts.emplace(file.serverPath, readFile(folder + sub + std::string(file.name)));
    }
    texts.emplace(kNewsPath, readFile(folder + "news/news.dat"));
    return texts;
}

StarterServer::StarterServer(const std::string& installedData)
    : m_files(readUpdateTexts(installedData)),
      m_server("starter server", [this](const PracticeRequest& request) {
          PracticeReply reply;
          const auto file = m_files.find(request.path());
          if (file == m_files.end()) {
              reply.status = 404;
          } else {
              reply.type = "text/plain";
              reply.body = file->second;
          }
          return reply;
      }) {
    m_server.listen();
    m_server.serve();
}

}  // namespace relay
