#include "viewer/page_tree.h"

namespace quorin {

PageTree buildPageTree() {
  return {
      {"Device Info", "LTE", "UMTS", "GSM"},
      {
          {"Device Info", {"IMSI", "IMEISV", "SIM Files"}},
          {"LTE",
           {"NAS", "RRC State", "Serving Cell Info", "Serving Cell Meas", "Tx Power",
            "Sel Resel Parameters", "EUTRA Neighbor Info", "C-DRX", "LTE Neighbor Cell Meas",
            "UMTS Neighbor Cell Meas", "GSM Neighbor Cell Meas", "CA Status", "Secondary Cell Meas",
            "Active Bearers"}},
          {"UMTS",
           {"NAS GMM", "NAS MM", "RRC State", "RRC Configuration", "Serving Cell Info",
            "Serving Cell Meas", "Tx Power", "Sel Resel Parameters", "EUTRA Neighbor Info",
            "UTRA Neighbor Info", "GSM Neighbor Info", "LTE Neighbor Cell Meas",
            "UMTS Neighbor Cell Meas", "GSM Neighbor Cell Meas", "Active Bearers"}},
          {"GSM",
           {"NAS GMM", "NAS MM", "Serving Cell Info", "Idle Config", "Idle Serv Cell Meas",
            "Connected Serv Cell Meas",  // with "GSM" before it, no page's key: meant
            "GSM GPRS Config",           // likewise
            "LTE Neighbor Cell Meas", "UMTS Neighbor Cell Meas", "GSM Neighbor Cell Meas",
            "Active Bearers"}},
      },
  };
}

}  // namespace quorin
