#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// What the GSM serving cell broadcasts for idle mode (3GPP TS 44.018, 45.008).
class KCellularGsmIdleConfig final : public Message<KCellularGsmIdleConfig> {
  PB_MESSAGE(KCellularGsmIdleConfig)
  PB_UINT64( 1, "timestamp",           timestamp,         Timestamp)
  PB_UINT32( 2, "arfcn_bcch",          arfcnBcch,         ArfcnBcch)
  PB_UINT32( 3, "mcc",                 mcc,               Mcc)
  PB_UINT32( 4, "mnc",                 mnc,               Mnc)
  PB_UINT32( 5, "lac",                 lac,               Lac)
  PB_UINT32( 6, "ci",                  ci,                Ci)
  PB_UINT32( 7, "bsic",                bsic,              Bsic)
  PB_UINT32( 8, "dtx_from_bs",         dtxFromBs,         DtxFromBs)
  PB_UINT32( 9, "radio_link_timeout",  radioLinkTimeout,  RadioLinkTimeout)
  PB_UINT32(10, "multib_rep",          multibRep,         MultibRep)
  PB_UINT32(11, "gsm_band",            gsmBand,           GsmBand)
  PB_UINT32(12, "access_tech",         accessTech,        AccessTech)
  PB_UINT32(13, "type_of_cur_chan",    typeOfCurChan,     TypeOfCurChan)
  PB_UINT32(14, "ms_txpwr",            msTxpwr,           MsTxpwr)
  PB_UINT32(15, "rx_acc_min",          rxAccMin,          RxAccMin)
  PB_UINT32(16, "cbq",                 cbq,               Cbq)
  PB_UINT32(17, "cba",                 cba,               Cba)
  PB_UINT32(18, "c2_valid",            c2Valid,           C2Valid)
  PB_UINT32(19, "cr_offset",           crOffset,          CrOffset)
  PB_UINT32(20, "tmp_offset",          tmpOffset,         TmpOffset)
  PB_UINT32(21, "penalty_t",           penaltyT,          PenaltyT)
  PB_UINT32(22, "t3212",               t3212,             T3212)
  PB_UINT32(23, "acc",                 acc,               Acc)
  PB_UINT32(24, "bs_pa_mfrms",         bsPaMfrms,         BsPaMfrms)
  PB_UINT32(25, "cs_pagemode",         csPagemode,        CsPagemode)
  PB_UINT32(26, "max_retrans_cs",      maxRetransCs,      MaxRetransCs)
  PB_UINT32(27, "emerg_call_allowed",  emergCallAllowed,  EmergCallAllowed)
  PB_UINT32(28, "attach_allowed",      attachAllowed,     AttachAllowed)
  PB_UINT32(29, "half_rate_supported", halfRateSupported, HalfRateSupported)
  PB_UINT32(30, "si_7_8_broadcast",    si78Broadcast,     Si78Broadcast)
  PB_UINT32(31, "cbch_supported",      cbchSupported,     CbchSupported)
  PB_UINT32(32, "reest_allowed",       reestAllowed,      ReestAllowed)
  PB_UINT32(33, "ecsc",                ecsc,              Ecsc)
  PB_UINT32(34, "si_2_ter_needed",     si2TerNeeded,      Si2TerNeeded)
};

}  // namespace quorin
