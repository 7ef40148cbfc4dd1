#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// GPRS configuration of the GSM serving cell.
class KCellularGsmGprsConfig final : public Message<KCellularGsmGprsConfig> {
  PB_MESSAGE(KCellularGsmGprsConfig)
  PB_UINT64( 1, "timestamp",             timestamp,          Timestamp)
  PB_BOOL  ( 2, "gprs_sup",              gprsSup,            GprsSup)
  PB_UINT32( 3, "rac",                   rac,                Rac)
  PB_BOOL  ( 4, "sp_pg_cy",              spPgCy,             SpPgCy)
  PB_UINT32( 5, "nco",                   nco,                Nco)
  PB_UINT32( 6, "nom",                   nom,                Nom)
  PB_UINT32( 7, "cr_hyst",               crHyst,             CrHyst)
  PB_UINT32( 8, "acc_thr",               accThr,             AccThr)
  PB_BOOL  ( 9, "ext_upl_tbf_supported", extUplTbfSupported, ExtUplTbfSupported)
  PB_UINT32(10, "priority_class",        priorityClass,      PriorityClass)
  PB_UINT32(11, "cell_bar_access_2",     cellBarAccess2,     CellBarAccess2)
};

}  // namespace quorin
