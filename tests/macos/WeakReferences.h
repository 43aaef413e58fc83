#pragma once

/// Does nothing: this runtime clears weak references when an object is deallocated.
inline void ClearWeakReferences(const void*) {}
