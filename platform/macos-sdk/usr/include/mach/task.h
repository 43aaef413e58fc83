#pragma once

#include <mach/mach_init.h>

__BEGIN_DECLS
kern_return_t task_threads(task_t, thread_act_array_t*, mach_msg_type_number_t*);
__END_DECLS
