#include "platform/foundation/zone.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <iterator>
#include <limits>
#include <optional>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/foundation/Data.h"

namespace quorin {

namespace {

constexpr char kSystemZone[] = "/etc/localtime";
constexpr char kSystemFolder[] = "/etc";
constexpr char kZones[] = "/usr/share/zoneinfo/";

constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();

/// Counts what may have changed the system's zone file: what is done to it, and every mount, which
/// may lie over it. A thread of its own waits for both, since asking the kernel at every conversion
/// would cost more than the conversion.
class SystemZoneWatch {
 public:
  SystemZoneWatch()
      : _files(inotify_init1(IN_CLOEXEC)),
        _mounts(open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)) {
    if (_files < 0 || _mounts < 0 || !watch()) return;
    _changes = 1;
    // Signals are for the threads that wait for them.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, &before);
    std::thread([this] { run(); }).detach();
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
  }

  static constexpr std::uint64_t kUnwatched = 0;

  /// `kUnwatched` where changes cannot be watched.
  [[nodiscard]] std::uint64_t changes() const { return _changes.load(std::memory_order_acquire); }

 private:
  bool watch() const {
    constexpr std::uint32_t kInFolder =
        IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_CLOSE_WRITE;
    constexpr std::uint32_t kOfFile = IN_ATTRIB | IN_MODIFY | IN_DELETE_SELF | IN_MOVE_SELF;
    (void)inotify_add_watch(_files, kSystemZone, kOfFile);  // behind its link, if it is one
    return inotify_add_watch(_files, kSystemFolder, kInFolder) >= 0;
  }
  void run() {
    pollfd waiting[] = {{_files, POLLIN, 0}, {_mounts, POLLPRI, 0}};
    char events[4096];
    while (poll(waiting, std::size(waiting), -1) >= 0) {
      if (waiting[0].revents != 0 && read(_files, events, sizeof events) <= 0) break;
      (void)watch();
      _changes.fetch_add(1, std::memory_order_release);
    }
    _changes = kUnwatched;
  }

  int _files;
  int _mounts;
  std::atomic<std::uint64_t> _changes = kUnwatched;
};

/// The instants at which a zone may change, as its file lists them (RFC 8536). Past the last, and
/// where there is no such file, nothing is known.
struct Transitions {
  std::vector<std::int64_t> at;
  bool lastsForever = false;  // nothing changes past the last
  bool known = false;
};

/// Requires: the bytes are there.
std::uint64_t bigEndian(Bytes bytes, std::size_t at, std::size_t count) {
  std::uint64_t value = 0;
  for (const std::uint8_t byte : bytes.subspan(at, count)) value = value << 8 | byte;
  return value;
}

struct FileHeader {
  std::size_t utc, standard, leaps, times, types, characters;

  FileHeader(Bytes bytes, std::size_t at)
      : utc(bigEndian(bytes, at + 20, 4)),
        standard(bigEndian(bytes, at + 24, 4)),
        leaps(bigEndian(bytes, at + 28, 4)),
        times(bigEndian(bytes, at + 32, 4)),
        types(bigEndian(bytes, at + 36, 4)),
        characters(bigEndian(bytes, at + 40, 4)) {}
  [[nodiscard]] std::size_t contentSize(std::size_t timeSize) const {
    return times * timeSize + times + types * 6 + characters + leaps * (timeSize + 4) + standard +
           utc;
  }
};

Transitions transitionsIn(const std::string& file) {
  constexpr std::size_t kHeaderSize = 44;
  Transitions found;
  const Ref<Data> content = dataWithContentsOfFile(file);
  const Bytes bytes = content ? content->bytes() : Bytes{};
  constexpr std::uint64_t kMagic = 0x545a6966;  // "TZif"
  if (bytes.size() < kHeaderSize || bigEndian(bytes, 0, 4) != kMagic || bytes[4] < '2')
    return found;
  const std::size_t second = kHeaderSize + FileHeader(bytes, 0).contentSize(4);
  if (second + kHeaderSize > bytes.size()) return found;
  const FileHeader header(bytes, second);
  const std::size_t footer = second + kHeaderSize + header.contentSize(8);
  if (footer >= bytes.size() || header.leaps != 0) return found;
  for (std::size_t i = 0; i < header.times; ++i)
    found.at.push_back(
        static_cast<std::int64_t>(bigEndian(bytes, second + kHeaderSize + i * 8, 8)));
  // Without a rule for the years after the last.
  found.lastsForever = !std::ranges::count(bytes.subspan(footer), static_cast<std::uint8_t>(','));
  found.known = std::ranges::is_sorted(found.at);
  return found;
}

std::string fileOf(const char* zone) {
  const std::string name(*zone == ':' ? zone + 1 : zone);
  if (name.starts_with('/')) return name;
  const char* folder = std::getenv("TZDIR");
  return (folder ? std::string(folder) + '/' : kZones) + name;
}

/// The variable `TZ`, without a search through an environment that did not change: the C library
/// puts a new name last, takes one away by moving up those behind it, and changes one in its place.
class ZoneVariable {
 public:
  /// Null where it is not set. What is set holds until the next call.
  const char* value() { return isUnchanged() ? _value : search(); }
  /// Whether it surely was not set since the last call.
  [[nodiscard]] [[gnu::always_inline]] bool isStillUnset() const {
    return isUnchanged() && !_value;
  }

 private:
  static constexpr std::string_view kName = "TZ=";

  [[nodiscard]] [[gnu::always_inline]] bool isUnchanged() const {
    return environ == _array && environ && *_behind == nullptr && *_last == _lastEntry &&
           *_own == _ownEntry;
  }
  const char* search() {
    _array = environ;
    _value = std::getenv("TZ");
    if (!environ) return _value;
    _behind = environ;
    _own = environ;
    for (; *_behind; ++_behind)
      if (*_behind + kName.size() == _value) _own = _behind;
    _last = _behind == environ ? environ : _behind - 1;
    _lastEntry = *_last;
    _ownEntry = *_own;
    return _value;
  }

  char** _array = nullptr;
  char** _behind = nullptr;  // the null behind the entries
  char** _last = nullptr;
  char** _own = nullptr;  // where it stands; else the first
  const char* _lastEntry = nullptr;
  const char* _ownEntry = nullptr;
  const char* _value = nullptr;
};

/// Which rules are in force: the text of `TZ`, or what the system's zone file holds.
class RulesInForce {
 public:
  /// Whether they are surely the same as at the last call of `unchanged`: asks nobody.
  [[nodiscard]] [[gnu::always_inline]] bool surelyUnchanged() const {
    return _watch && _variable.isStillUnset() && _watch->changes() == _changes;
  }
  /// Whether they are the same as at the last call.
  bool unchanged() {
    const char* zone = _variable.value();
    if (!zone && _watch && _watch->changes() == _changes) return true;
    return (zone && _zone == zone) || changeTo(zone);
  }
  [[nodiscard]] const Transitions& transitions() const { return _transitions; }

 private:
  /// False: they are others.
  bool changeTo(const char* zone) {
    static const SystemZoneWatch& watch = *new SystemZoneWatch;  // its thread never ends
    _zone = zone ? std::optional<std::string>(zone) : std::nullopt;
    _changes = watch.changes();
    _watch = zone || _changes == SystemZoneWatch::kUnwatched ? nullptr : &watch;
    _transitions = transitionsIn(zone ? fileOf(zone) : kSystemZone);
    return false;
  }

  ZoneVariable _variable;
  const SystemZoneWatch* _watch = nullptr;  // while it tells of the file in force
  std::uint64_t _changes = SystemZoneWatch::kUnwatched;
  std::optional<std::string> _zone;
  Transitions _transitions;
};

/// Narrows the time for which the zone holds to what its file says.
void setBounds(LocalZone& zone, std::int64_t seconds, const Transitions& transitions) {
  zone.from = seconds;
  zone.until = seconds + 1;
  if (!transitions.known) return;
  const auto& at = transitions.at;
  const auto next = std::ranges::upper_bound(at, seconds);
  if (next == at.end() && !transitions.lastsForever) return;
  zone.from = next == at.begin() ? -kNever : *std::prev(next);
  zone.until = next == at.end() ? kNever : *next;
}

struct KnownZone {
  RulesInForce rules;
  LocalZone zone;

  const LocalZone& at(std::int64_t seconds) {
    if (!rules.unchanged() || !zone.holdsAt(seconds)) lookUp(seconds);
    return zone;
  }
  void lookUp(std::int64_t seconds) {
    tzset();
    const auto instant = static_cast<std::time_t>(seconds);
    std::tm local{};
    localtime_r(&instant, &local);
    zone.offset = static_cast<std::int32_t>(local.tm_gmtoff);
    zone.abbreviation = local.tm_zone ? local.tm_zone : "";
    setBounds(zone, seconds, rules.transitions());
    ++zone.serial;
  }
};

constinit KnownZone* known = nullptr;  // once made, until the process ends

[[gnu::noinline]] const LocalZone& zoneInForce(std::int64_t seconds) {
  if (!known) known = new KnownZone;
  return known->at(seconds);
}

}  // namespace

const LocalZone& localZone(std::int64_t seconds) {
  const KnownZone* const last = known;
  if (last && last->rules.surelyUnchanged() && last->zone.holdsAt(seconds)) [[likely]]
    return last->zone;
  return zoneInForce(seconds);
}

}  // namespace quorin
