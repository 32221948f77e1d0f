#pragma once

#include <QtGlobal>

#include <span>
#include <vector>

/// For each key of `from` the index of its equal in `to`, -1 for none; the indexes rise. Near the shortest way from one
/// to the other where they differ little, else whatever is found quickly: work and memory stay about linear.
std::vector<qint32> AlignKeys(std::span<const quint64> from, std::span<const quint64> to);
