#include "platform/window/Appearance.h"

#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QDeadlineTimer>
#include <QFont>
#include <QMap>
#include <QScreen>
#include <QTemporaryFile>
#include <QTimer>
#include <csignal>
#include <string>

#include "tests/window/offscreen.h"

namespace quorin::test {
namespace {

const char* const kSettings = "org.freedesktop.portal.Settings";
const char* const kPath = "/org/freedesktop/portal/desktop";
const char* const kAppearance = "org.freedesktop.appearance";
const char* const kInterface = "org.gnome.desktop.interface";

const char* const kBus =
    "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><auth>EXTERNAL</auth>"
    "<policy context='default'><allow own='*'/><allow send_destination='*'/>"
    "<allow receive_sender='*'/></policy></busconfig>";

/// A session bus of the tests' own: no window here looks as the desktop wants where it is tested.
class SessionBus : public ::testing::Environment {
  void SetUp() override {
    QTemporaryFile configuration;
    ASSERT_TRUE(configuration.open());
    configuration.write(kBus);
    configuration.flush();
    std::string option = "--config-file=" + configuration.fileName().toStdString();
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    char name[] = "dbus-daemon", stays[] = "--nofork", tells[] = "--print-address=1";
    char* const arguments[] = {name, option.data(), stays, tells, nullptr};
    posix_spawn_file_actions_t output;
    posix_spawn_file_actions_init(&output);
    posix_spawn_file_actions_adddup2(&output, ends[1], STDOUT_FILENO);
    ASSERT_EQ(posix_spawnp(&_daemon, name, &output, nullptr, arguments, environ), 0);
    posix_spawn_file_actions_destroy(&output);
    close(ends[1]);
    char address[256];
    const ssize_t length = read(ends[0], address, sizeof address);
    close(ends[0]);
    ASSERT_GT(length, 0);
    qputenv("DBUS_SESSION_BUS_ADDRESS", QByteArray(address, length).trimmed());
    qunsetenv("XDG_RUNTIME_DIR");
    qt();
  }
  void TearDown() override {
    kill(_daemon, SIGKILL);
    waitpid(_daemon, nullptr, 0);
  }

  pid_t _daemon = -1;
};
[[maybe_unused]] ::testing::Environment* const bus =
    ::testing::AddGlobalTestEnvironment(new SessionBus);

/// The desktop's settings.
class Portal : public QDBusVirtualObject {
 public:
  using Values = QMap<std::pair<QString, QString>, QVariant>;

  explicit Portal(Values values = {}) : _values(std::move(values)) {
    EXPECT_TRUE(_connection.registerVirtualObject(kPath, this));
    EXPECT_TRUE(_connection.registerService("org.freedesktop.portal.Desktop"));
  }
  ~Portal() override { QDBusConnection::disconnectFromBus("portal"); }

  void change(const QString& group, const QString& key, const QVariant& value) {
    QDBusMessage signal = QDBusMessage::createSignal(kPath, kSettings, "SettingChanged");
    signal << group << key << QVariant::fromValue(QDBusVariant(value));
    EXPECT_TRUE(_connection.send(signal));
  }

  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& call, const QDBusConnection& connection) override {
    if (call.interface() != kSettings || call.member() != "Read") return false;
    const auto found =
        _values.find({call.arguments().value(0).toString(), call.arguments().value(1).toString()});
    if (found == _values.end()) {
      connection.send(call.createErrorReply(QDBusError::InvalidArgs, "no such setting"));
    } else {  // a variant in the variant that is asked for
      const QDBusVariant inner(*found);
      connection.send(
          call.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(inner)))));
    }
    ++answered;
    return true;
  }

  int answered = 0;

 private:
  Values _values;
  QDBusConnection _connection = QDBusConnection::connectToBus(
      QString::fromLocal8Bit(qgetenv("DBUS_SESSION_BUS_ADDRESS")), "portal");
};

/// An appearance below a font of 20 pixels.
class Followed {
 public:
  explicit Followed(std::optional<bool> dark = {}, std::optional<double> textScale = {})
      : appearance(dark, textScale) {
    QFont font;
    font.setPixelSize(20);
    QGuiApplication::setFont(font);
    QObject::connect(&appearance, &Appearance::changed, &appearance, [this] { ++_changes; });
  }

  [[nodiscard]] double textScale() const { return appearance.textSize() / 20; }

  /// Its two questions are answered, and so many of the answers and later changes have arrived.
  void waitFor(const Portal& portal, int changes) {
    QTimer waker;
    waker.start(20);
    const QDeadlineTimer end(10000);
    while ((portal.answered < 2 || _changes < changes) && !end.hasExpired())
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    ASSERT_EQ(portal.answered, 2);
    ASSERT_EQ(_changes, changes);
  }

  Appearance appearance;

 private:
  int _changes = 0;
};

TEST(Appearance, IsWhatTheDesktopAnswers) {
  struct Row {
    QVariant colorScheme, textScale;
    bool isDark;
    double scale;
  };
  for (const Row& row : {
           Row{0U, 1.0, false, 1},
           Row{1U, 1.25, true, 1.25},
           Row{2U, 0.75, false, 0.75},
           Row{1U, 0.49, true, 0.5},
           Row{1U, 3.01, true, 3},
           Row{{}, 1.5, false, 1.5},
           Row{1U, {}, true, 1},
       }) {
    Portal::Values values;
    if (row.colorScheme.isValid()) values[{kAppearance, "color-scheme"}] = row.colorScheme;
    if (row.textScale.isValid()) values[{kInterface, "text-scaling-factor"}] = row.textScale;
    Portal portal(values);
    Followed followed;
    ASSERT_NO_FATAL_FAILURE(followed.waitFor(portal, static_cast<int>(values.size())));
    EXPECT_EQ(followed.appearance.dark(), row.isDark) << row.colorScheme.toUInt();
    EXPECT_DOUBLE_EQ(followed.textScale(), row.scale) << row.textScale.toDouble();
  }
}

TEST(Appearance, FollowsWhatTheDesktopChanges) {
  struct Row {
    const char* group;
    const char* key;
    QVariant value;
    bool isDark;
    double scale;
  };
  Portal portal;
  Followed followed;
  ASSERT_NO_FATAL_FAILURE(followed.waitFor(portal, 0));
  int changes = 0;
  for (const Row& row : {
           Row{kAppearance, "color-scheme", 1U, true, 1},
           Row{kAppearance, "color-scheme", 2U, false, 1},
           Row{kInterface, "text-scaling-factor", 2.0, false, 2},
           Row{kAppearance, "color-scheme", 1U, true, 2},
           Row{kAppearance, "color-scheme", QVariant::fromValue(QDBusVariant(0U)), false, 2},
           Row{kInterface, "text-scaling-factor", 0.1, false, 0.5},
           Row{kInterface, "text-scaling-factor", 30.0, false, 3},
           // Of others:
           Row{kInterface, "color-scheme", 1U, false, 3},
           Row{kAppearance, "text-scaling-factor", 1.0, false, 3},
           Row{kInterface, "cursor-size", 1U, false, 3},
           Row{kAppearance, "contrast", 1U, false, 3},
       }) {
    portal.change(row.group, row.key, row.value);
    ASSERT_NO_FATAL_FAILURE(followed.waitFor(portal, ++changes));
    EXPECT_EQ(followed.appearance.dark(), row.isDark) << row.group << row.key;
    EXPECT_DOUBLE_EQ(followed.textScale(), row.scale) << row.group << row.key;
  }
}

TEST(Appearance, IsWhatTheCommandLineSaysWhateverTheDesktopWants) {
  Portal portal({{{kAppearance, "color-scheme"}, 1U}, {{kInterface, "text-scaling-factor"}, 2.0}});
  Followed asked(false, 1.5);
  ASSERT_NO_FATAL_FAILURE(asked.waitFor(portal, 2));
  EXPECT_FALSE(asked.appearance.dark());
  EXPECT_DOUBLE_EQ(asked.textScale(), 1.5);
}

TEST(Appearance, HasTextOfTheSystemsFontButNotTooSmall) {
  const Followed followed;
  QFont font;
  font.setPixelSize(10);
  QGuiApplication::setFont(font);
  EXPECT_DOUBLE_EQ(followed.appearance.textSize(), 15);
  font.setPointSizeF(36);
  QGuiApplication::setFont(font);
  EXPECT_DOUBLE_EQ(followed.appearance.textSize(),
                   QGuiApplication::primaryScreen()->logicalDotsPerInchY() / 2);
}

TEST(Appearance, KnowsWhetherAScreenReaderReads) {
  const Followed followed;
  for (const bool active : {true, false, true}) {
    QAccessible::setActive(active);
    EXPECT_EQ(followed.appearance.accessible(), active);
  }
}

}  // namespace
}  // namespace quorin::test
