#pragma once

#include <QByteArray>
#include <QList>

#include <functional>

/// What work costs is only ever compared with other work of the same run: that holds on any
/// machine, fast, slow or busy. Costs are processor time of this process.

/// Work to compare with that everybody can picture: a whole baseline JPEG of 12 megapixels, its
/// bytes and the decoding of them.
const QByteArray& twelveMegapixels();
void decodeTwelveMegapixels();

/// The middle one of `values`, of which there is one at least.
double median(QList<double> values);

/// Of three runs the middle one, in seconds: to compare with another of these.
double costOf(const std::function<void()>& work);

/// How many times as much as `reference` does `work` cost? Both run three times in turn, and the
/// middle one of each counts.
double timesTheCost(const std::function<void()>& work, const std::function<void()>& reference);

/// How many times as much does work on ten times as many items cost? `work` is given how many.
/// Some ten where each item costs the same, a hundred where each looks at all others. What costs
/// less than a hundredth of a large picture's decoding counts as that much.
double growth(int items, const std::function<void(int)>& work);

/// At most so much is still no growth by the square, whatever caches and memory add.
inline constexpr double MostGrowth = 40;
