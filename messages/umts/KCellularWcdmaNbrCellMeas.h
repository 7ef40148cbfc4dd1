#pragma once

#include "messages/codec/fields.h"
#include "messages/umts/GsmCellMeasResult.h"
#include "messages/umts/LteCellMeasResult.h"
#include "messages/umts/UtraCellMeasResult.h"

namespace quorin {

/// UMTS, GSM and LTE neighbours measured from UMTS.
class KCellularWcdmaNbrCellMeas final : public Message<KCellularWcdmaNbrCellMeas> {
  PB_MESSAGE(KCellularWcdmaNbrCellMeas)
  PB_UINT64  (1, "timestamp",        timestamp,      Timestamp)
  PB_REPEATED(2, "meas_utra_result", measUtraResult, MeasUtraResult, measUtraResults, MeasUtraResults, UtraCellMeasResult)
  PB_REPEATED(3, "meas_gsm_result",  measGsmResult,  MeasGsmResult,  measGsmResults,  MeasGsmResults,  GsmCellMeasResult)
  PB_REPEATED(4, "meas_lte_result",  measLteResult,  MeasLteResult,  measLteResults,  MeasLteResults,  LteCellMeasResult)
};

}  // namespace quorin
