#pragma once

#include "messages/codec/fields.h"
#include "messages/nas/RoutingAreaId.h"
#include "messages/nas/names.h"

namespace quorin {

/// Packet-switched mobility management context (3GPP TS 24.008).
class KCellularGmmContext final : public Message<KCellularGmmContext> {
  PB_MESSAGE(KCellularGmmContext)
  PB_UINT64    (1, "timestamp",          timestamp,        Timestamp)
  PB_ENUM      (2, "reg_status",         regStatus,        RegStatus,        names::KREG_STATUS)
  PB_ENUM      (3, "update_status",      updateStatus,     UpdateStatus,     names::GPRS_STATUS)
  PB_SUBMESSAGE(4, "rai",                rai,              Rai,              RoutingAreaId)
  PB_UINT32    (5, "p_tmsi",             pTmsi,            PTmsi)
  PB_UINT32    (6, "t3312_dur_s",        t3312DurS,        T3312DurS)
  PB_ENUM      (7, "proc_failure_cause", procFailureCause, ProcFailureCause, names::KNAS_MM_PROC_FAILURE_CAUSE)
  PB_ENUM      (8, "reject_cause",       rejectCause,      RejectCause,      names::KNAS_MM_REJ_CAUSE)
  PB_ENUM      (9, "reg_proc",           regProc,          RegProc,          names::KNAS_MM_REG_PROC)
};

}  // namespace quorin
