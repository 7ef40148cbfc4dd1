#pragma once

#include <cstdint>
#include <string_view>

namespace quorin {

/// A metric ID is this prefix plus the 16-bit tag of its message type.
inline constexpr std::int64_t kMetricIDPrefix = 0x3C0000;

struct MetricID {
  std::string_view name;
  std::int64_t id;
};

// K_LTE_RLF and K_LTE_SCELL_MEAS are known by name only; their events are not handled: meant.
inline constexpr std::int64_t K_LTE_CDRX_CONFIG = 0x3C4E18;
inline constexpr std::int64_t K_LTE_RRC_STATE = 0x3C4E04;
inline constexpr std::int64_t K_LTE_SCELL_INFO = 0x3C40C2;
inline constexpr std::int64_t K_LTE_RLF = 0x3C4E25;
inline constexpr std::int64_t K_LTE_SEL_RESEL_INFO = 0x3CD30E;
inline constexpr std::int64_t K_LTE_SCELL_MEAS = 0x3CD301;
inline constexpr std::int64_t K_LTE_TX_POWER = 0x3CD302;
inline constexpr std::int64_t K_LTE_RSRP_RSRQ_SINR = 0x3C4F6A;
inline constexpr std::int64_t K_LTE_COMPCARR_INFO = 0x3CD30B;
inline constexpr std::int64_t K_LTE_CA_STATUS = 0x3CD313;
inline constexpr std::int64_t K_LTE_INTERRAT_MEAS = 0x3CD310;
inline constexpr std::int64_t K_LTE_INTRARAT_MEAS = 0x3CD30F;
inline constexpr std::int64_t K_LTE_SECONDARYCELL_MEAS = 0x3CD317;
inline constexpr std::int64_t K_CELLULAR_MM_INFO = 0x3CD509;
inline constexpr std::int64_t K_CELLULAR_ACTIVE_BEARER = 0x3CD50D;
inline constexpr std::int64_t K_LTE_EMM_CTXT = 0x3CD50C;
inline constexpr std::int64_t K_CELLULAR_MM_CTXT = 0x3CD50A;
inline constexpr std::int64_t K_CELLULAR_GMM_CTXT = 0x3CD50B;
inline constexpr std::int64_t K_UMTS_RRC_STATE = 0x3CD112;
inline constexpr std::int64_t K_UMTS_RRC_CONFIG = 0x3CD113;
inline constexpr std::int64_t K_UMTS_SCELL_INFO = 0x3C300C;
inline constexpr std::int64_t K_UMTS_SCELL_MEAS = 0x3CD102;
inline constexpr std::int64_t K_UMTS_TX_POWER = 0x3CD103;
inline constexpr std::int64_t K_UMTS_SEL_RESEL_INFO = 0x3CD104;
inline constexpr std::int64_t K_UMTS_NCELL_MEAS = 0x3CD105;
inline constexpr std::int64_t K_GSM_SCELL_INFO = 0x3C2E0C;
inline constexpr std::int64_t K_GSM_IDLE_CONFIG = 0x3CD001;
inline constexpr std::int64_t K_GSM_IDLE_SCELL_MEAS = 0x3CD002;
inline constexpr std::int64_t K_GSM_CS_RF_MEAS = 0x3CD003;
inline constexpr std::int64_t K_GSM_NCELL_MEAS = 0x3CD009;
inline constexpr std::int64_t K_GSM_GPRS_CONFIG = 0x3CD00C;
inline constexpr std::int64_t K_SIM_FILE_INFO = 0x3C0013;

/// All 32 by name.
inline constexpr MetricID kMetricIDs[] = {
    {"K_LTE_CDRX_CONFIG", K_LTE_CDRX_CONFIG},
    {"K_LTE_RRC_STATE", K_LTE_RRC_STATE},
    {"K_LTE_SCELL_INFO", K_LTE_SCELL_INFO},
    {"K_LTE_RLF", K_LTE_RLF},
    {"K_LTE_SEL_RESEL_INFO", K_LTE_SEL_RESEL_INFO},
    {"K_LTE_SCELL_MEAS", K_LTE_SCELL_MEAS},
    {"K_LTE_TX_POWER", K_LTE_TX_POWER},
    {"K_LTE_RSRP_RSRQ_SINR", K_LTE_RSRP_RSRQ_SINR},
    {"K_LTE_COMPCARR_INFO", K_LTE_COMPCARR_INFO},
    {"K_LTE_CA_STATUS", K_LTE_CA_STATUS},
    {"K_LTE_INTERRAT_MEAS", K_LTE_INTERRAT_MEAS},
    {"K_LTE_INTRARAT_MEAS", K_LTE_INTRARAT_MEAS},
    {"K_LTE_SECONDARYCELL_MEAS", K_LTE_SECONDARYCELL_MEAS},
    {"K_CELLULAR_MM_INFO", K_CELLULAR_MM_INFO},
    {"K_CELLULAR_ACTIVE_BEARER", K_CELLULAR_ACTIVE_BEARER},
    {"K_LTE_EMM_CTXT", K_LTE_EMM_CTXT},
    {"K_CELLULAR_MM_CTXT", K_CELLULAR_MM_CTXT},
    {"K_CELLULAR_GMM_CTXT", K_CELLULAR_GMM_CTXT},
    {"K_UMTS_RRC_STATE", K_UMTS_RRC_STATE},
    {"K_UMTS_RRC_CONFIG", K_UMTS_RRC_CONFIG},
    {"K_UMTS_SCELL_INFO", K_UMTS_SCELL_INFO},
    {"K_UMTS_SCELL_MEAS", K_UMTS_SCELL_MEAS},
    {"K_UMTS_TX_POWER", K_UMTS_TX_POWER},
    {"K_UMTS_SEL_RESEL_INFO", K_UMTS_SEL_RESEL_INFO},
    {"K_UMTS_NCELL_MEAS", K_UMTS_NCELL_MEAS},
    {"K_GSM_SCELL_INFO", K_GSM_SCELL_INFO},
    {"K_GSM_IDLE_CONFIG", K_GSM_IDLE_CONFIG},
    {"K_GSM_IDLE_SCELL_MEAS", K_GSM_IDLE_SCELL_MEAS},
    {"K_GSM_CS_RF_MEAS", K_GSM_CS_RF_MEAS},
    {"K_GSM_NCELL_MEAS", K_GSM_NCELL_MEAS},
    {"K_GSM_GPRS_CONFIG", K_GSM_GPRS_CONFIG},
    {"K_SIM_FILE_INFO", K_SIM_FILE_INFO},
};

}  // namespace quorin
