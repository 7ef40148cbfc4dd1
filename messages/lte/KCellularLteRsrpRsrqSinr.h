#pragma once

#include "messages/codec/fields.h"
#include "messages/lte/RsrpRsrqSinr.h"

namespace quorin {

/// LTE signal quality: the average over a period and the latest samples.
class KCellularLteRsrpRsrqSinr final : public Message<KCellularLteRsrpRsrqSinr> {
  PB_MESSAGE(KCellularLteRsrpRsrqSinr)
  PB_UINT64    ( 1, "timestamp",        timestamp,      Timestamp)
  PB_STRING    ( 3, "call_id",          callId,         CallId)
  PB_UINT32    ( 6, "last_x_seconds",   lastXSeconds,   LastXSeconds)
  PB_UINT32    ( 7, "last_y_samples",   lastYSamples,   LastYSamples)
  PB_UINT32    ( 8, "sample_period_ms", samplePeriodMs, SamplePeriodMs)
  PB_UINT32    (10, "duration_ms",      durationMs,     DurationMs)
  PB_UINT32    (11, "num_samples",      numSamples,     NumSamples)
  PB_SUBMESSAGE(14, "avg_values",       avgValues,      AvgValues,  RsrpRsrqSinr)
  PB_REPEATED  (15, "inst_values",      instValues,     InstValues, instValues, InstValues, RsrpRsrqSinr)
};

}  // namespace quorin
