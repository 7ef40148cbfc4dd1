#include "messages/codec/unrolled.h"
#include "messages/gsm/GsmNcellMeas.h"
#include "messages/gsm/KCellularGsmCsRfMeasurement.h"
#include "messages/gsm/KCellularGsmGprsConfig.h"
#include "messages/gsm/KCellularGsmGrrEventMeasCr.h"
#include "messages/gsm/KCellularGsmIdleConfig.h"
#include "messages/gsm/KCellularGsmIdleScellMeasurement.h"
#include "messages/gsm/KCellularGsmScellInfo.h"
#include "messages/gsm/LteNcellMeas.h"
#include "messages/gsm/UmtsNcellMeas.h"

namespace quorin {

template struct Unrolled<GsmNcellMeas>;
template struct Unrolled<KCellularGsmCsRfMeasurement>;
template struct Unrolled<KCellularGsmGprsConfig>;
template struct Unrolled<KCellularGsmGrrEventMeasCr>;
template struct Unrolled<KCellularGsmIdleConfig>;
template struct Unrolled<KCellularGsmIdleScellMeasurement>;
template struct Unrolled<KCellularGsmScellInfo>;
template struct Unrolled<LteNcellMeas>;
template struct Unrolled<UmtsNcellMeas>;

}  // namespace quorin
