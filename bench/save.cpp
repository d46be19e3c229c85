// SPDX-License-Identifier: GPL-3.0-or-later
//
// The cost of a durable save compared with a QSaveFile commit of the same bytes, in the current folder: start
// it on a disk, since a folder in memory has nothing to flush. The two kinds of saves alternate, because the
// speed of a disk changes within a second; the first save of each run warms up and does not count.
//
//   bench_save [runs] [saves in a run]
#include "Ratios.h"
#include "core/FileStore.h"

#include <QSaveFile>
#include <QTemporaryDir>

#include <cstdlib>
#include <string>

namespace {

using relay::bench::median;
using relay::bench::milliseconds;

// About a website file with a few hundred URLs.
constexpr std::size_t kBytes = 32 * 1024;

void saveWithQSaveFile(const QString& path, const std::string& bytes) {
    QSaveFile file(path);
    const bool written = file.open(QIODevice::WriteOnly) &&
                         file.write(bytes.data(), static_cast<qint64>(bytes.size())) > 0 && file.commit();
    if (!written) std::exit(1);
}

}  // namespace

int main(int argc, char** argv) {
    const int runs = argc > 1 ? std::atoi(argv[1]) : 9;
    const int saves = argc > 2 ? std::atoi(argv[2]) : 100;
    const QTemporaryDir folder(QStringLiteral("./bench-save-XXXXXX"));
    const QString peerPath = folder.filePath(QStringLiteral("peer"));
    const std::string ourPath = folder.filePath(QStringLiteral("ours")).toStdString();
    const std::string bytes(kBytes, 'x');
    std::vector<double> ratios;
    std::printf("%4s %14s %14s %8s\n", "run", "QSaveFile ms", "writeFile ms", "ratio");
    for (int run = 1; run <= runs; ++run) {
        std::vector<double> peer;
        std::vector<double> ours;
        for (int save = 0; save <= saves; ++save) {
            const double peerTime = milliseconds([&] { saveWithQSaveFile(peerPath, bytes); });
            const double ourTime = milliseconds([&] { relay::writeFile(ourPath, bytes); });
            if (save == 0) continue;
            peer.push_back(peerTime);
            ours.push_back(ourTime);
        }
        ratios.push_back(median(ours) / median(peer));
        std::printf("%4d %14.3f %14.3f %8.2f\n", run, median(peer), median(ours), ratios.back());
    }
    std::printf("median ratio: %.2f\n", median(ratios));
}
