#pragma once

#include "messages/codec/fields.h"
#include "messages/nas/names.h"

namespace quorin {

/// One bearer: APN, type and addresses.
class BearerContext final : public Message<BearerContext> {
  PB_MESSAGE(BearerContext)
  PB_UINT32( 1, "cid",                 cid,              Cid)
  PB_UINT32( 2, "nsapi",               nsapi,            Nsapi)
  PB_STRING( 3, "apn",                 apn,              Apn)
  PB_ENUM  ( 4, "pdp_type",            pdpType,          PdpType,          names::PDP_TYPE)
  PB_BYTES ( 5, "pdp_addr",            pdpAddr,          PdpAddr)
  PB_ENUM  ( 6, "primary_dns_type",    primaryDnsType,   PrimaryDnsType,   names::PDP_TYPE)
  PB_BYTES ( 7, "primary_dns_addr",    primaryDnsAddr,   PrimaryDnsAddr)
  PB_ENUM  ( 8, "secondary_dns_type",  secondaryDnsType, SecondaryDnsType, names::PDP_TYPE)
  PB_BYTES ( 9, "secondary_dns_addr",  secondaryDnsAddr, SecondaryDnsAddr)
  PB_BOOL  (10, "is_addr_irat_mobile", isAddrIratMobile, IsAddrIratMobile)
};

}  // namespace quorin
