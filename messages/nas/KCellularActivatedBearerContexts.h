#pragma once

#include "messages/codec/fields.h"
#include "messages/nas/BearerContext.h"

namespace quorin {

/// The active PDP and EPS bearer contexts.
class KCellularActivatedBearerContexts final : public Message<KCellularActivatedBearerContexts> {
  PB_MESSAGE(KCellularActivatedBearerContexts)
  PB_UINT64  (1, "timestamp",            timestamp,          Timestamp)
  PB_UINT32  (2, "bearer_context_count", bearerContextCount, BearerContextCount)
  PB_REPEATED(3, "bearer_contexts",      bearerContexts,     BearerContexts, bearerContexts, BearerContexts, BearerContext)
};

}  // namespace quorin
