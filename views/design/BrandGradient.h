// The brand's gradients as brushes.
#pragma once

#include <QLinearGradient>
#include <QRectF>

namespace quillmere::brandGradient {

/// From brandSage at the top leading corner to brandMint at the bottom trailing corner.
[[nodiscard]] QLinearGradient primary(const QRectF& bounds);

}  // namespace quillmere::brandGradient
