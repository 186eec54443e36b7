// Operating-system handles.
#ifndef TYPESCOUT_HOST_HANDLE_H
#define TYPESCOUT_HOST_HANDLE_H

extern "C" {

// Closes a handle; non-zero on success. On Windows the system's own function; elsewhere there are
// none to close, and the answer is 0.
int CloseHandle(void* handle);

}  // extern "C"

#endif  // TYPESCOUT_HOST_HANDLE_H
