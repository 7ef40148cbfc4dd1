#include "messages/codec/unrolled.h"
#include "messages/umts/EutraFreqInfo.h"
#include "messages/umts/GsmCellMeasResult.h"
#include "messages/umts/GsmFreqInfo.h"
#include "messages/umts/KCellularWcdmaCellInfo.h"
#include "messages/umts/KCellularWcdmaNbrCellMeas.h"
#include "messages/umts/KCellularWcdmaRrcConfiguration.h"
#include "messages/umts/KCellularWcdmaRrcConnectionState.h"
#include "messages/umts/KCellularWcdmaScellMeasurement.h"
#include "messages/umts/KCellularWcdmaSelReselCellInfo.h"
#include "messages/umts/KCellularWcdmaTxPower.h"
#include "messages/umts/LteCellMeasResult.h"
#include "messages/umts/UtraCellMeasResult.h"
#include "messages/umts/UtraFreqInfo.h"

namespace quorin {

template struct Unrolled<EutraFreqInfo>;
template struct Unrolled<GsmCellMeasResult>;
template struct Unrolled<GsmFreqInfo>;
template struct Unrolled<KCellularWcdmaCellInfo>;
template struct Unrolled<KCellularWcdmaNbrCellMeas>;
template struct Unrolled<KCellularWcdmaRrcConfiguration>;
template struct Unrolled<KCellularWcdmaRrcConnectionState>;
template struct Unrolled<KCellularWcdmaScellMeasurement>;
template struct Unrolled<KCellularWcdmaSelReselCellInfo>;
template struct Unrolled<KCellularWcdmaTxPower>;
template struct Unrolled<LteCellMeasResult>;
template struct Unrolled<UtraCellMeasResult>;
template struct Unrolled<UtraFreqInfo>;

}  // namespace quorin
