#include "basebandd/simulator/mobility.h"

namespace quorin::simulator {

namespace {

// A connection is handed over to a lower layer a little earlier than an idle modem would go.
constexpr double kConnectedMargin = 2;  // dB

struct TimeToTrigger {
  Technology serving;
  Technology neighbour;
  bool isSameCarrier;
  std::int64_t ms;  // TS 36.331 6.3.5, 25.331 10.3.7.64
};
constexpr TimeToTrigger kTimesToTrigger[] = {
    {Technology::lte, Technology::lte, true, 640},
    {Technology::lte, Technology::lte, false, 1280},
    {Technology::lte, Technology::umts, false, 2560},
    {Technology::umts, Technology::umts, true, 640},
    {Technology::umts, Technology::lte, false, 1280},
    {Technology::umts, Technology::gsm, false, 640},
    {Technology::gsm, Technology::gsm, true, 1920},
};

const TimeToTrigger* timeToTrigger(const Carrier& serving, const Carrier& neighbour) {
  for (const TimeToTrigger& row : kTimesToTrigger)
    if (row.serving == serving.technology && row.neighbour == neighbour.technology &&
        row.isSameCarrier == (&serving == &neighbour))
      return &row;
  return nullptr;
}

double over(double level, const Carrier& carrier) { return level - carrier.qRxLevMin; }

}  // namespace

bool meetsReselection(const Candidates& c) {
  const double neighbour = over(c.neighbourLevel, c.neighbour);
  if (c.neighbour.priority > c.serving.priority) return neighbour > c.neighbour.threshXHigh;
  if (c.neighbour.priority == c.serving.priority)
    return c.neighbourLevel > c.servingLevel + c.serving.qHyst;
  return over(c.servingLevel, c.serving) < c.serving.threshServingLow &&
         neighbour > c.neighbour.threshXLow;
}

bool meetsHandover(const Candidates& c) {
  if (!timeToTrigger(c.serving, c.neighbour)) return false;
  const double level = c.neighbourLevel + c.neighbourOffset;
  const double neighbour = over(level, c.neighbour);
  if (&c.neighbour == &c.serving) return level > c.servingLevel + kA3Offset + kA3Hysteresis;
  if (c.neighbour.priority > c.serving.priority) return neighbour > c.neighbour.threshXHigh;
  return over(c.servingLevel, c.serving) < c.serving.threshServingLow + kConnectedMargin &&
         neighbour > c.neighbour.threshXLow + kConnectedMargin;
}

std::int64_t timeToTriggerMs(const Carrier& serving, const Carrier& neighbour) {
  const TimeToTrigger* row = timeToTrigger(serving, neighbour);
  return row ? row->ms : -1;
}

}  // namespace quorin::simulator
