#pragma once

#include "messages/codec/fields.h"
#include "messages/nas/Guti.h"
#include "messages/nas/KCellularTrackingAreaId.h"
#include "messages/nas/names.h"

namespace quorin {

/// EPS mobility management context (3GPP TS 24.301).
class KCellularEmmContext final : public Message<KCellularEmmContext> {
  PB_MESSAGE(KCellularEmmContext)
  PB_UINT64    ( 1, "timestamp",                 timestamp,              Timestamp)
  PB_ENUM      ( 2, "reg_status",                regStatus,              RegStatus,    names::KREG_STATUS)
  PB_ENUM      ( 3, "update_status",             updateStatus,           UpdateStatus, names::EPS_STATUS)
  PB_ENUM      ( 4, "ue_op_mode",                ueOpMode,               UeOpMode,     names::EPS_UE_OP_MODE)
  PB_REPEATED  ( 5, "tai_list",                  taiList,                TaiList,      taiLists, TaiLists, KCellularTrackingAreaId)
  PB_SUBMESSAGE( 6, "guti",                      guti,                   Guti,         Guti)
  PB_ENUM      ( 7, "reject_cause",              rejectCause,            RejectCause,  names::EMM_CAUSE)
  PB_ENUM      ( 8, "reg_proc",                  regProc,                RegProc,      names::EMM_PROC)
  PB_UINT32    ( 9, "t3412_dur_s",               t3412DurS,              T3412DurS)
  PB_BOOL      (10, "is_ims_voice_supported",    isImsVoiceSupported,    IsImsVoiceSupported)
  PB_BOOL      (11, "is_emerg_bearer_supported", isEmergBearerSupported, IsEmergBearerSupported)
};

}  // namespace quorin
