#include "basebandd/simulator/town.h"

#include <cmath>
#include <iterator>

#include "platform/platform.h"

namespace quorin::simulator {

namespace {

// clang-format off
constexpr Site kSites[] = {
    {"Market",     {    0,    0},   0, "738UG", 4711, 4700, 4690},
    {"Station",    {  650,  150},  30, "738UG", 4712, 4700, 4690},
    {"Museum",     {  250,  700},  10, "738UG", 4711, 4700, 4690},
    {"Park",       { -550,  450},  40,  "38UG", 4711, 4700, 4690},
    {"Bridge",     { -350, -600},  20,  "38UG", 4711, 4700, 4690},
    {"School",     {  400, -650},   0,  "38UG", 4712, 4700, 4690},
    {"Hospital",   { 1150, -400},  50,  "38UG", 4712, 4700, 4690},
    {"Stadium",    { 1250,  650},  15, "738UG", 4712, 4700, 4690},
    {"North Gate", { -250, 1300},  25,  "38UG", 4713, 4700, 4690},
    {"Harbour",    {  950, 1300},  45,  "38UG", 4713, 4700, 4690},
    {"West Gate",  {-1550, -120},  30,  "38UG", 4711, 4700, 4690},
    {"Mill",       {-2950,  100},  90,    "UG", 4711, 4701, 4691},
    {"Forest",     {-4600, -250},  60,     "G", 4711, 4701, 4691},
    // A campus network on a carrier of its own, with the highest priority, closed to the subscriber.
    {"Campus",     {  550, 1750},  60,     "7", 4799, 4700, 4690},
};

constexpr Ridge kRidges[] = {
    {-1900, 36, 500},
    {-3700, 34, 400},
};

constexpr Waypoint kRoute[] = {
    {{   0,  -50}, 11,  8}, {{ 700,  -50}, 13,  6}, {{1200, -150}, 13, 0}, {{ 1300,  500}, 13, 10},
    {{ 900,  900}, 13,  0}, {{ 850, 1450}, 11,  6}, {{ 500, 1500},  9, 12}, {{ 100, 1480}, 11, 0},
    {{-200, 1450}, 11,  6}, {{-300,  800}, 13,  0}, {{ 200,  400}, 11, 9}, {{-400,  200}, 11,  6},
    {{-700, -300}, 13,  0}, {{-1250, -250}, 13, 8},
    {{-1900, -200}, 20, 0}, {{-2900,  -50}, 22, 0}, {{-3700, -100}, 20, 0}, {{-4700, -150}, 15, 25},
    {{-3700, -100}, 15, 0}, {{-2900,  -50}, 22, 0}, {{-1900, -200}, 22, 0}, {{-1250, -250}, 16, 4},
    {{-400, -450}, 13,  6}, {{ 300, -500}, 11,  9}, {{ 500, -250}, 11, 0},
};

constexpr TrackingArea kTrackingAreas[] = {
    {4711, {4711,    0}, true},
    {4712, {4712, 4713}, true},
    {4713, {4713, 4712}, true},
    {4799, {4799,    0}, false},
};
// clang-format on

}  // namespace

double distance(Point a, Point b) {
  const double x = a.x - b.x;
  const double y = a.y - b.y;
  return std::sqrt(x * x + y * y);
}

std::span<const Site> sites() { return kSites; }

std::span<const Ridge> ridges() { return kRidges; }

std::span<const Waypoint> route() { return kRoute; }

const TrackingArea& trackingArea(std::uint32_t tac) {
  for (const TrackingArea& area : kTrackingAreas)
    if (area.tac == tac) return area;
  fatal();
}

}  // namespace quorin::simulator
