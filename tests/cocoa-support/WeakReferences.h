#pragma once

/// Makes each weak reference to the object read as nil. For the object's `dealloc`, since GCC's
/// runtime doesn't.
void ClearWeakReferences(const void* object);
