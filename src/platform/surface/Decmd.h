#pragma once

/// Commands that the design surface runs (ExecCommand) and answers for (QueryStatus).
enum Decmd {
    DECMD_UNDO = 1,
    DECMD_REDO,
    DECMD_CUT,
    DECMD_COPY,
    DECMD_PASTE,
    DECMD_DELETE,
    DECMD_SELECTALL,
    DECMD_BOLD,
    DECMD_ITALIC,
    DECMD_UNDERLINE,
    DECMD_GETBLOCKFMTNAMES ///< gives a QStringList, in the order in which the format box shows the names
};

/// What the surface says of a command. Below 3 it is not available.
enum Decmdf {
    DECMDF_NOTSUPPORTED = 0,
    DECMDF_DISABLED = 1,
    DECMDF_ENABLED = 3,
    DECMDF_LATCHED = 7,
    DECMDF_NINCHED = 11
};
