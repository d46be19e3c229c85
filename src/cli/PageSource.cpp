// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/PageSource.h"

#include "cli/CommandLineContext.h"
#include "cli/PageWait.h"
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/Url.h"
#include "transport/frmHTTP.h"

namespace relay {

SourcePage readSourcePage(CommandLineContext& context, const std::string& name, std::string_view purpose) {
    if (name.empty()) throw Failure("An empty name is neither a file nor an address", 53);
    SourcePage source;
    if (localPath(name, TypedIn::CommandLine)) {
        source.text = readFile(name);
        source.isPage = true;
        return source;
    }
    frmHTTP fetcher(context.home().services);
    FetchReply page;
    const auto keep = [&page](const FetchReply& reply) { page = reply; };
    fetcher.setConsumer(purpose, {keep, keep, {}});
    fetcher.fetch(purpose, name);
    source.stopped = !waitForPage(context, fetcher);
    source.problem = fetchProblem(page);
    source.isPage = page.isPage();
    source.text = std::move(page.text);
    return source;
}

}  // namespace relay
