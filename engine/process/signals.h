#pragma once

namespace engine::signals {

/// From now on every signal that would end corvgs and that can be caught, and those about its
/// children, only wake who polls wakeDescriptor(). A signal that was ignored or has a handler stays
/// so, and a fault of corvgs's own still ends it; a message that nobody reads (SIGPIPE) is ignored,
/// because the window may be closed while the engine works.
void catchAll();

/// In a child: what catchAll() changed is as it is in any program.
void restoreAll();

/// Readable when a signal came; clearWake() makes it unreadable again.
int wakeDescriptor();
void clearWake();

/// The last signal that asked corvgs to end; 0: none did.
int endRequest();

} // namespace engine::signals
