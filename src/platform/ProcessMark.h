#pragma once

#include <QString>

/// A name for a running process that no later process gets, though process ids are given out again.
QString OwnProcessMark();

/// True while the process with this mark runs. False for text that is no mark.
bool ProcessRuns(const QString &mark);
