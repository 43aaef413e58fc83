#pragma once

#include <mach/mach_init.h>

__BEGIN_DECLS
kern_return_t vm_deallocate(task_t, vm_address_t, vm_size_t);
__END_DECLS
