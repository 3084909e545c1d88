// Shrinking a painted picture without losing what was drawn on it.
#pragma once

#include <QImage>

namespace orm {

// `source` scaled to `width` x `height`, for a picture of lines on a plain
// background (`background`, of the same size). Where several source pixels
// fold into one, the one drawn most strongly against the background wins,
// so a line one pixel thick never vanishes the way it does when every k-th
// row is kept. A growing side repeats pixels. RGB32 in and out.
QImage foldScaled(const QImage& source, const QImage& background, int width, int height);

}  // namespace orm
