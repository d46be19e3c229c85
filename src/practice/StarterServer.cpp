// SPDX-License-Identifier: GPL-3.0-or-later
#include "practice/StarterServer.h"

#include "catalogue/CatalogueFiles.h"
#include "catalogue/UpdateFiles.h"
#include "core/Paths.h"

#include <memory>

namespace relay {

UpdateTexts readUpdateTexts(const Paths& paths, std::string_view engines) {
    UpdateTexts texts;
    for (const UpdateFile& file : kUpdateFiles)
        texts.emplace(file.serverPath, readInstalledFile(paths, file.name, file.ofEngines ? engines : ""));
    texts.emplace(kNewsPath, readInstalledFile(paths, "news.dat", "news"));
    return texts;
}

StarterServer::StarterServer(const Paths& paths)
    : m_files(readUpdateTexts(paths)), m_server("starter server", [this](const PracticeRequest& request) {
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

EngineUpdate::OwnServer starterServer(const Paths& paths) {
    return [&paths] {
        const auto server = std::make_shared<const StarterServer>(paths);
        return std::shared_ptr<const std::string>(server, &server->address());
    };
}

}  // namespace relay
