#pragma once
// Command-line programs as child processes, and work spread over the machine's cores.

#include <cstddef>
#include <functional>
#include <vector>

#include "support/values.h"

namespace vornaset {

/// Runs the program at the path with these arguments (an array of texts; null means none), waits until it has ended,
/// and gives all that it wrote to standard output; never null. Its standard input, working folder and environment are
/// ours. What it writes to standard error is read and dropped. There is no time limit and the exit status isn't looked
/// at. The child may print more than a pipe holds: its output is taken while it runs. No zombie stays behind. A path
/// without a slash names a file of the working folder: no search path is asked. Throws Exception with the path in its
/// reason when the program can't be started, InvalidArgumentException for a null path and for an argument that is no
/// text or holds U+0000.
Data dataWithShellScript(const String& launchPath, const Array& arguments);

/// Whether a program may go on that has printed so many bytes.
using ProgramWatch = std::function<bool(size_t bytes)>;

/// The same with somebody who watches: `mayGoOn` is asked several times a second while the program runs, and when it
/// says no, the program is killed together with all that it has started, and what it has printed until then is given.
/// Such a program has no standard input and a process group of its own. What `mayGoOn` throws reaches the caller, once
/// the program is dead. A registered function is called and not watched.
Data dataWithShellScript(const String& launchPath, const Array& arguments, const ProgramWatch& mayGoOn);

/// What stands for a program inside this process: the same arguments, the bytes that the program would print. It may be
/// called on several threads at once. Null bytes count as no bytes; what it throws reaches the caller.
using ShellScriptFunction = std::function<Data(const Array& arguments)>;

/// From now on dataWithShellScript calls the function for exactly this path (the same text, nothing is resolved) and
/// starts no process. An empty function brings the program back. May be called on any thread. Throws
/// InvalidArgumentException for a null path.
void registerShellScript(const String& path, ShellScriptFunction function);

/// One piece of work on a queue.
using Operation = std::function<void()>;

/// Runs the operations over all cores, the calling thread among them, and returns when all have finished. They start in
/// the array's order. An operation that throws doesn't keep the others from running; when all have finished, the
/// exception of the first such operation in the array's order is thrown on, the others are dropped. An operation may
/// itself call this. Throws InvalidArgumentException for an empty operation, before any has run.
void processOperations(const std::vector<Operation>& operations);

}  // namespace vornaset
