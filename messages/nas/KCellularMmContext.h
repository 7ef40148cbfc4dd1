#pragma once

#include "messages/codec/fields.h"
#include "messages/nas/KCellularLocationAreaId.h"
#include "messages/nas/names.h"

namespace quorin {

/// Circuit-switched mobility management context (3GPP TS 24.008).
class KCellularMmContext final : public Message<KCellularMmContext> {
  PB_MESSAGE(KCellularMmContext)
  PB_UINT64    (1, "timestamp",          timestamp,        Timestamp)
  PB_ENUM      (2, "reg_status",         regStatus,        RegStatus,        names::KREG_STATUS)
  PB_ENUM      (3, "update_status",      updateStatus,     UpdateStatus,     names::STATUS)
  PB_SUBMESSAGE(4, "lai",                lai,              Lai,              KCellularLocationAreaId)
  PB_UINT32    (5, "tmsi",               tmsi,             Tmsi)
  PB_UINT32    (6, "t3212_dur_s",        t3212DurS,        T3212DurS)
  PB_ENUM      (7, "proc_failure_cause", procFailureCause, ProcFailureCause, names::KNAS_MM_PROC_FAILURE_CAUSE)
  PB_ENUM      (8, "reject_cause",       rejectCause,      RejectCause,      names::KNAS_MM_REJ_CAUSE)
  PB_BOOL      (9, "is_combined_proc",   isCombinedProc,   IsCombinedProc)
};

}  // namespace quorin
