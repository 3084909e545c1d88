// Shrinking a painted picture without losing what was drawn on it.
#pragma once

#include <QImage>
#include <vector>

namespace orm {

// The `area` of `source` scaled to `width` x `height`, for a picture of lines
// on a background that is plain along each row: `background[y]` is its colour
// in the area's row y. Where several source pixels fold into one, the one drawn
// most strongly against the background wins, so a line one pixel thick never
// vanishes the way it does when every k-th row is kept. A growing side repeats
// pixels. RGB32 out.
QImage foldScaled(const QImage& source, const QRect& area, const std::vector<QRgb>& background, int width,
                  int height);

}  // namespace orm
