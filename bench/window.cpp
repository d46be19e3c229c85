// SPDX-License-Identifier: GPL-3.0-or-later
// The speed of the window, one measurement per run, in milliseconds on stdout:
//   bench_window home HOME ENGINES   makes a home with that many engines and 200 websites
//   bench_window empty               an empty main window, up to its first painting
//   bench_window start HOME          the program's window on the home, up to its first painting
//   bench_window bare ROWS           two bare views on bare models of that many rows, filled and painted
//   bench_window lists HOME          the engine screen's two lists, loaded, filled by "select all", painted
//   bench_window node HOME           a click on a website of 1,000 URLs, up to its painting
//   bench_window engines HOME        sort, filter, select all and remove all on the engine screen
#include "app/Program.h"
#include "catalogue/Catalogue.h"
#include "core/FileSystem.h"
#include "support/ScriptedPrompts.h"
#include "support/TestHome.h"
#include "widgets/Appearance.h"
#include "widgets/ListView.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>

#include <cstdio>
#include <fstream>

namespace {
using namespace relay;

void report(const char* what, const QElapsedTimer& timer) {
    std::printf("%s %.2f\n", what, static_cast<double>(timer.nsecsElapsed()) / 1e6);
}

void paint(QWidget& widget) {
    QCoreApplication::sendPostedEvents();
    widget.repaint();
    QCoreApplication::processEvents();
}

void makeHome(const std::string& home, int engines) {
    const Paths paths = Paths::insideHome(home);
    makeFolder(paths.WindowsPath);
    makeFolder(paths.inApp("Projects"));
    std::ofstream catalogue(paths.inWindows("krveng5.dat"), std::ios::binary);
    const char* const types[] = {"ENG", "DIR", "FFA", "NEWS", "MALL", "HOT", "MIS"};
    const char* const countries[] = {"US", "GB", "DE", "FR", "CA", "AU"};
    for (int i = 0; i < engines; ++i) {
        catalogue << "Name=Engine of number " << (i * 7919) % engines << "\r\nHome=http://e" << i
                  << ".example/\r\nAddURL=http://e" << i << ".example/add\r\nCountry=" << countries[i % 6]
                  << "\r\nType=" << types[i % 7] << "\r\nCategory=N\r\nMethod=GET\r\nAction=http://e" << i
                  << ".example/submit\r\nQuery=url=<URL>&title=<TITLE>\r\nSiteLevel=" << i % 3 << "\r\n\r\n";
    }
    catalogue << "END:Version 6.0\r\n";
    std::ofstream(paths.inWindows("catkws.dat"), std::ios::binary)
        << "[Free For All Links]\r\nBusiness=1\r\n[General For All Links]\r\nBusiness=1\r\nEND\r\n";
    std::ofstream index(paths.ProjectFilePath, std::ios::binary);
    for (int project = 0; project < 20; ++project) {
        index << "[Project " << project << "]\r\nDescription=\r\nLast=10\r\n";
        for (int site = 1; site <= 10; ++site) {
            const std::string name = "Site " + std::to_string(project) + "-" + std::to_string(site);
            const std::string file = paths.inApp("Projects/" + name + ".kws");
            index << site << "=" << name << "|" << file << "\r\n";
            const int urls = project == 0 ? 1000 : 5;
            std::ofstream website(file, std::ios::binary);
            website << "[Web Site Info]\r\nVersion=6.0\r\nTitle=" << name << "\r\nLastURL=" << urls
                    << "\r\n[URL]\r\n";
            for (int url = 1; url <= urls; ++url)
                website << "URL" << url << "=http://www.example.test/page" << url << ".html\r\nLocalFile"
                        << url << "=\r\n";
        }
    }
    SettingsStore store(paths.settingsFile);
    store.setValue(kApplication, "Preference", "LoadConfig", "1");
    store.setValue(kApplication, "Setting", "Version", "6.0");
}

// Ends the event loop when the window has been painted.
class FirstPaint final : public QObject {
  public:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(); });
        return false;
    }
};

void emptyWindow() {
    QMainWindow window;
    FirstPaint painted;
    window.installEventFilter(&painted);
    window.resize(1180, 740);
    window.show();
    QCoreApplication::exec();
}

struct Opened final {
    explicit Opened(const std::string& home) : program(Paths::insideHome(home), {}, clock, prompts) {
        program.start();
    }
    test::ScriptedPrompts prompts;
    SystemClock clock;
    Program program;

    template <typename Widget>
    Widget* find(const char* name) {
        return program.window().findChild<Widget*>(QString::fromLatin1(name));
    }
};

void startProgram(const std::string& home) {
    FirstPaint painted;
    Opened opened(home);
    opened.program.window().installEventFilter(&painted);
    QCoreApplication::exec();
}

// The simplest possible list: texts in a vector.
class BareModel final : public QAbstractTableModel {
  public:
    explicit BareModel(int rows) {
        m_rows.reserve(static_cast<std::size_t>(rows));
        for (int row = 0; row < rows; ++row)
            m_rows.push_back({QStringLiteral("Engine of number %1").arg(row), QStringLiteral("ENG"),
                              QStringLiteral("US")});
    }
    int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
    }
    int columnCount(const QModelIndex&) const override { return 3; }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole) return {};
        return m_rows[static_cast<std::size_t>(index.row())][static_cast<std::size_t>(index.column())];
    }

  private:
    std::vector<std::array<QString, 3>> m_rows;
};

void bareLists(int rows) {
    QWidget window;
    window.resize(1180, 740);
    QTreeView* views[2];
    for (int list = 0; list < 2; ++list) {
        views[list] = new QTreeView(&window);
        views[list]->setUniformRowHeights(true);
        views[list]->setGeometry(list * 590, 0, 580, 740);
    }
    window.show();
    paint(window);
    QElapsedTimer timer;
    timer.start();
    std::vector<std::unique_ptr<BareModel>> models;
    for (QTreeView* view : views)
        view->setModel(models.emplace_back(std::make_unique<BareModel>(rows)).get());
    paint(window);
    report("bare", timer);
}

void engineLists(Opened& opened) {
    clsMain& main = opened.program.main();
    opened.find<QAction>("Engines")->trigger();
    paint(opened.program.window());
    QElapsedTimer timer;
    timer.start();
    {
        RowsBatch left(main.catalogue.lists.lsvEngines);
        main.catalogue.lists.lsvEngines.clear();
        for (const clsEngines& engine : main.catalogue.lists.engines)
            addEngineListView(main.catalogue.lists.lsvEngines, engine);
    }
    {
        RowsBatch right(main.catalogue.lists.lsvSelectedEngines);
        for (const clsEngines& engine : main.catalogue.lists.engines)
            addEngineListView(main.catalogue.lists.lsvSelectedEngines, engine);
    }
    paint(opened.program.window());
    report("lists", timer);
}

void clickNode(Opened& opened) {
    Workspace& workspace = opened.program.main().workspace;
    ProjectNode& project = *workspace.tree().root().children.at(0);
    workspace.nodeClick(*project.children.at(0));
    paint(opened.program.window());
    QElapsedTimer timer;
    timer.start();
    opened.find<QTreeView>("TreeView1")->setCurrentIndex(workspace.tree().indexOf(*project.children.at(1)));
    paint(opened.program.window());
    report("node", timer);
}

void workOnEngines(Opened& opened) {
    opened.find<QAction>("Engines")->trigger();
    paint(opened.program.window());
    const auto measure = [&](const char* what, const std::function<void()>& action) {
        QElapsedTimer timer;
        timer.start();
        action();
        QCoreApplication::processEvents();
        paint(opened.program.window());
        report(what, timer);
    };
    auto* const list = opened.find<ListView>("lsvEngines");
    auto* const findBox = opened.find<QLineEdit>("txtFindEngines");
    measure("highlight-all", [&] { list->selectAll(); });
    measure("select-highlighted", [&] { opened.find<QPushButton>("cmdSelectEngine_0")->click(); });
    measure("sort-highlighted", [&] { list->rows()->sortByColumn(0); });
    measure("remove-all", [&] { opened.find<QPushButton>("cmdRemoveEngine_1")->click(); });
    measure("select-all", [&] { opened.find<QPushButton>("cmdSelectEngine_1")->click(); });
    measure("remove-all", [&] { opened.find<QPushButton>("cmdRemoveEngine_1")->click(); });
    measure("clear-highlights", [&] { list->clearSelection(); });
    measure("find-all", [&] {
        findBox->setText(QStringLiteral("engine"));
        Q_EMIT findBox->returnPressed();
    });
}
}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words.size() == 3 && words[0] == "home") {
        makeHome(words[1], std::stoi(words[2]));
        return 0;
    }
    QApplication application(argc, argv);
    applyAppearance(application, QStringLiteral("light"));
    if (words.size() == 1 && words[0] == "empty") {
        emptyWindow();
    } else if (words.size() == 2 && words[0] == "start") {
        startProgram(words[1]);
    } else if (words.size() == 2 && words[0] == "bare") {
        bareLists(std::stoi(words[1]));
    } else if (words.size() == 2) {
        Opened opened(words[1]);
        if (words[0] == "lists") engineLists(opened);
        if (words[0] == "node") clickNode(opened);
        if (words[0] == "engines") workOnEngines(opened);
    } else {
        std::fprintf(stderr, "bench_window: see the head of bench/window.cpp\n");
        return 2;
    }
    return 0;
}
