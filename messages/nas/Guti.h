#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// The temporary LTE identity, without its PLMN (3GPP TS 23.003, 2.8).
class Guti final : public Message<Guti> {
  PB_MESSAGE(Guti)
  PB_UINT32(1, "mmegi",  mmegi, Mmegi)
  PB_UINT32(2, "mmec",   mmec,  Mmec)
  PB_UINT32(3, "m_tmsi", mTmsi, MTmsi)
};

}  // namespace quorin
