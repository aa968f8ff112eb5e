// What the suite has of the library and can not be made to give back.
#pragma once

/// Keeps the library loaded until the process ends, whatever dlclose is called with. Call it before the suite gets
/// the address of a routine, which it may call at any time, or runs its event loop within a member. Does nothing when
/// called again. [GUI thread]
void stayLoaded();
