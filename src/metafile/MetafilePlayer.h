#pragma once

#include <QByteArray>
#include <QPainter>
#include <QRectF>

namespace tessaly::metafile {

// Plays an enhanced metafile into a target rectangle of a painter: the
// header's frame fills the target. Error 481 for a damaged file, after the
// records before the damage were drawn.
void playEmf(QPainter& painter, const QByteArray& bytes, const QRectF& target);

// Plays an old-style metafile, placeable or not: its window (or placeable
// box, or drawn extent) fills the target. Error 481 for a damaged file.
void playWmf(QPainter& painter, const QByteArray& bytes, const QRectF& target);

} // namespace tessaly::metafile
