#pragma once

namespace engine::signals {

/// From now on the signals that ask corvgs to end, and those about its children, only wake who
/// polls wakeDescriptor(). A signal that was ignored stays so; a message that nobody reads
/// (SIGPIPE) is ignored, because the window may be closed while the engine works.
void catchAll();

/// In a child: every signal does again what it does to any program.
void restoreAll();

/// Readable when a signal came; clearWake() makes it unreadable again.
int wakeDescriptor();
void clearWake();

/// The last signal that asked corvgs to end; 0: none did.
int endRequest();

} // namespace engine::signals
