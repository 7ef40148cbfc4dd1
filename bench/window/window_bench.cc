// The window with a page of 400 rows beside a bare list with the same texts, both in this process: what a
// reload costs in processor time, and how long frames and keys take while 500 events a second arrive.
// Prints a line of name and figure each.
#include <malloc.h>

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickItem>
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <functional>
#include <thread>

#include "app/interface.h"
#include "bench/window/bare.h"
#include "messages/lte/KCellularLteNbrEutraCellMeas.h"
#include "metrics/MetricValidator.h"
#include "platform/baseband/Loopback.h"
#include "platform/foundation/log.h"
#include "platform/recording/recording.h"
#include "platform/window/MainLoop.h"
#include "platform/window/WindowScreen.h"

namespace quorin::bench {
namespace {

constexpr int kNeighbours = 80;  // of five fields: 400 rows
constexpr int kChanged = 40;     // half of the neighbours have another level
constexpr int kLteRow = 1;
constexpr int kNeighboursRow = 8;

double processorMilliseconds() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double median(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

double percentile95(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() * 95 / 100];
}

int levelOf(int neighbour, int round) {
  return -120 + neighbour % 40 + (neighbour % 2 == 0 ? round % 7 : 0);
}

XpcRef neighboursEvent(int round) {
  KCellularLteNbrEutraCellMeas message;
  for (int i = 0; i < kNeighbours; ++i) {
    const auto neighbour = make<EgwErrcNbrEutraMeas>();
    neighbour->setNbrEarfcn(1300);
    neighbour->setNbrPhysCellId(static_cast<std::uint32_t>(i));
    neighbour->setFreqBandInd(3);
    neighbour->setNbrRsrp(levelOf(i, round));
    neighbour->setNbrRsrq(-20);
    message.addMeasNbrEutra(neighbour);
  }
  PBDataWriter writer;
  message.writeTo(writer);
  const std::string line = R"({"kKeyPayload":")" + hexText(writer.bytes()) +
                           R"(","kKeyMetricID":)" + std::to_string(K_LTE_INTRARAT_MEAS) + "}";
  std::string reason;
  return readRecordingLine(line, reason)->event;
}

std::vector<BareModel::Row> bareRows() {
  std::vector<BareModel::Row> rows;
  for (int i = 0; i < kNeighbours; ++i) {
    rows.push_back({QString("LTE Neighbor %1").arg(i), ""});
    rows.push_back({"nbr_earfcn", "1300"});
    rows.push_back({"nbr_phys_cell_id", QString::number(i)});
    rows.push_back({"freq_band_ind", "3"});
    rows.push_back({"nbr_rsrp", QString::number(levelOf(i, 0))});
    rows.push_back({"nbr_rsrq", "-20"});
  }
  return rows;
}

/// Waits for the window's next frame. False when none came within a tenth of a second.
bool awaitFrame(QQuickWindow& window, const std::function<void()>& change) {
  bool swapped = false;
  const auto connection =
      QObject::connect(&window, &QQuickWindow::frameSwapped, [&] { swapped = true; });
  change();
  QElapsedTimer waited;
  waited.start();
  while (!swapped && waited.elapsed() < 100) QCoreApplication::processEvents();
  QObject::disconnect(connection);
  return swapped;
}

void pass(int milliseconds) {
  QElapsedTimer waited;
  waited.start();
  while (waited.elapsed() < milliseconds)
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
}

/// The application with its page of 400 rows on top.
struct Ours {
  Loopback service;
  UIApplication application{interfaceDescription()};
  std::unique_ptr<WindowScreen> screen;
  std::unique_ptr<MainLoop> loop;

  Ours() {
    service.install();
    application.launch("AppDelegate");
    screen = std::make_unique<WindowScreen>(application, WindowLook{{390, 844}, false, {}});
    loop = std::make_unique<MainLoop>();
    report(0);
    screen->stack().press(0, kLteRow);
    screen->stack().press(1, kNeighboursRow);
    pass(500);
  }
  void report(int round) {
    service.deliver(osmin::kEventMetric, neighboursEvent(round));
    pass(20);
  }
  UITableView& table() {
    return dynamic_cast<UITableViewController&>(*application.navigation().topViewController())
        .tableView();
  }
  QQuickWindow& window() { return *screen->window(); }
};

QQuickItem* visibleList(QQuickItem* item) {
  if (!item->isVisible()) return nullptr;
  if (item->inherits("QQuickListView")) return item;
  for (QQuickItem* child : item->childItems())
    if (QQuickItem* list = visibleList(child)) return list;
  return nullptr;
}

void say(const char* name, double figure) {
  std::printf("%s %.4f\n", name, figure);
  std::fflush(stdout);
}

void reloads(Ours& ours, BareModel& model, BareWindow& bare) {
  std::vector<double> changed;
  std::vector<double> unchanged;
  std::vector<double> byHand;
  int round = 0;
  for (int block = 0; block < 5; ++block) {
    for (int i = 0; i < 8; ++i) {
      ours.report(++round);
      double start = processorMilliseconds();
      awaitFrame(ours.window(), [&] { ours.table().reloadData(); });
      changed.push_back(processorMilliseconds() - start);
      pass(20);
      start = processorMilliseconds();
      ours.table().reloadData();
      QCoreApplication::processEvents();
      unchanged.push_back(processorMilliseconds() - start);
    }
    pass(2000);  // until no mark is left that fades meanwhile
    for (int i = 0; i < 8; ++i) {
      ++round;
      pass(20);
      const double start = processorMilliseconds();
      awaitFrame(bare.window(), [&] {
        for (int row = 0; row < kChanged; ++row)
          model.change(row * 12 + 4, QString::number(levelOf(row * 2, round)));
      });
      byHand.push_back(processorMilliseconds() - start);
    }
  }
  say("reload_changed_ms", median(changed));
  say("reload_unchanged_ms", median(unchanged));
  say("bare_changed_ms", median(byHand));
}

/// Feeds 500 events a second while it lives: the recording's, and the page's own once a second.
class Feed {
 public:
  Feed(Loopback& service, const std::vector<XpcRef>& events) {
    for (int round = 0; round < 7; ++round) _own.push_back(neighboursEvent(round));
    _thread = std::thread([this, &service, &events] {
      auto due = std::chrono::steady_clock::now();
      for (std::size_t i = 0; !_ending; ++i) {
        const bool own = i % 500 == 0;
        service.deliver(osmin::kEventMetric,
                        own ? _own[i / 500 % _own.size()] : events[i % events.size()]);
        std::this_thread::sleep_until(due += std::chrono::milliseconds(2));
      }
    });
  }
  ~Feed() {
    _ending = true;
    _thread.join();
  }

 private:
  std::vector<XpcRef> _own;
  std::atomic<bool> _ending = false;
  std::thread _thread;
};

/// From the moment that each step was due to its frame, 16 ms apart.
std::vector<double> framesOf(QQuickWindow& window, int count, const std::function<void(int)>& step) {
  std::vector<double> taken;
  QElapsedTimer clock;
  clock.start();
  for (int i = 1; i <= count; ++i) {
    const qint64 due = clock.nsecsElapsed() / 1'000'000 + 16;
    while (clock.elapsed() < due)
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents,
                                      static_cast<int>(std::max<qint64>(1, due - clock.elapsed())));
    if (awaitFrame(window, [&] { step(i); }))
      taken.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6 - static_cast<double>(due));
  }
  return taken;
}

void scroll(const char* prefix, QQuickWindow& window) {
  QQuickItem* list = visibleList(window.contentItem());
  const auto frames = framesOf(window, 300, [&](int i) {
    list->setProperty("contentY", (i < 150 ? i : 300 - i) * 20.0);
  });
  say((std::string(prefix) + "_scroll_p95_ms").c_str(), percentile95(frames));
}

void keys(const char* prefix, QQuickWindow& window) {
  visibleList(window.contentItem())->setProperty("contentY", 0);
  QFocusEvent focus(QEvent::FocusIn);  // a display without a window manager gives it to nobody
  QCoreApplication::sendEvent(&window, &focus);
  const auto frames = framesOf(window, 150, [&](int i) {
    const int key = i <= 75 ? Qt::Key_Down : Qt::Key_Up;
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &press);
  });
  say((std::string(prefix) + "_input_p95_ms").c_str(), percentile95(frames));
}

std::vector<XpcRef> recordedEvents(const char* path) {
  std::vector<XpcRef> events;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    std::string reason;
    const auto read = readRecordingLine(line, reason);
    if (read && xpc_int64_get_value(xpc_dictionary_get_value(
                    read->event.get(), osmin::kKeyMetricID)) != K_LTE_INTRARAT_MEAS)
      events.push_back(read->event);
  }
  return events;
}

/// What pages cost that were popped: each keeps its timer and itself.
void poppedPages(Ours& ours) {
  constexpr int kPopped = 1000;
  const auto cost = [] {
    const double start = processorMilliseconds();
    pass(10'000);
    return (processorMilliseconds() - start) / 2;
  };
  const auto pop = [&] {
    ours.screen->stack().press(1, 1);
    ours.screen->stack().back();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);  // as the loop itself does
  };
  ours.screen->stack().back();
  for (int i = 0; i < 100; ++i) pop();  // what the toolkit makes once
  pass(3000);
  const double before = cost();
  const std::size_t bytes = mallinfo2().uordblks;
  for (int i = 0; i < kPopped; ++i) pop();
  pass(3000);
  say("popped_page_kb", static_cast<double>(mallinfo2().uordblks - bytes) / 1024 / kPopped);
  say("thousand_popped_ms_per_reload", cost() - before);
}

int run(int argc, char** argv) {
  QGuiApplication qt(argc, argv);
  if (argc != 2) return std::fputs("usage: window_bench RECORDING\n", stderr), 2;
  setPrintSink([](std::string_view) {});
  setSystemLogSink([](std::string_view) {});
  const auto events = recordedEvents(argv[1]);
  Ours ours;
  BareModel model(bareRows());
  BareWindow bare(model);
  bare.window().setPosition(500, 0);
  pass(500);
  reloads(ours, model, bare);
  for (int round = 0; round < 3; ++round) {
    scroll("bare", bare.window());
    keys("bare", bare.window());
    const Feed feed(ours.service, events);
    scroll("ours", ours.window());
    keys("ours", ours.window());
  }
  poppedPages(ours);
  std::fflush(stdout);
  std::_Exit(0);
}

}  // namespace
}  // namespace quorin::bench

int main(int argc, char** argv) { return quorin::bench::run(argc, argv); }
