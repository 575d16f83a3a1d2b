#pragma once

namespace cli {

/// Takes over Ctrl-C and the requests to end. As long as no file is being written such a signal ends the process at
/// once with one sentence; afterwards it is only noted, and the run ends at its next page. The same one again ends the
/// process. Writing to a closed pipe and past a file size limit become ordinary write errors.
void watchSignals();

/// From here on signals are noted and not obeyed.
void noteSignalsOnly();

/// The signal that was noted; 0 for none.
int notedSignal();

}  // namespace cli
