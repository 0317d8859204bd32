// Builds the brushes from the tokens.
#include "views/design/BrandGradient.h"

#include "views/design/Tokens.h"

namespace quillmere::brandGradient {

QLinearGradient primary(const QRectF& bounds) {
  QLinearGradient gradient(bounds.topLeft(), bounds.bottomRight());
  gradient.setColorAt(0, toColor(design::colour::brandSage));
  gradient.setColorAt(1, toColor(design::colour::brandMint));
  return gradient;
}

}  // namespace quillmere::brandGradient
