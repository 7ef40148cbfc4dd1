#pragma once

#include "messages/codec/fields.h"
#include "messages/lte/names.h"

namespace quorin {

/// Reselection parameters of one LTE neighbour frequency.
class NbrEutra final : public Message<NbrEutra> {
  PB_MESSAGE(NbrEutra)
  PB_UINT32( 1, "earfcn",        earfcn,      Earfcn)
  PB_SINT32( 2, "Q_rxlev_min",   qRxlevMin,   QRxlevMin)
  PB_SINT32( 3, "Q_qual_min",    qQualMin,    QQualMin)
  PB_SINT32( 4, "Q_offset",      qOffset,     QOffset)
  PB_SINT32( 5, "Pmax",          pmax,        Pmax)
  PB_UINT32( 6, "dl_bw",         dlBw,        DlBw)
  PB_UINT32( 7, "Thres_X_highP", thresXHighP, ThresXHighP)
  PB_UINT32( 8, "Thres_X_lowP",  thresXLowP,  ThresXLowP)
  PB_UINT32( 9, "Thres_X_highQ", thresXHighQ, ThresXHighQ)
  PB_UINT32(10, "Thres_X_lowQ",  thresXLowQ,  ThresXLowQ)
  PB_UINT32(11, "priority",      priority,    Priority)
  PB_ENUM  (12, "frame_type",    frameType,   FrameType, names::FRAME_TYPE)
  PB_UINT32(13, "band",          band,        Band)
};

}  // namespace quorin
