#pragma once

#include <sys/cdefs.h>

typedef int kern_return_t;
typedef unsigned int mach_port_t;
typedef mach_port_t task_t;
typedef mach_port_t thread_t;
typedef mach_port_t thread_act_t;
typedef thread_act_t* thread_act_array_t;
typedef unsigned int mach_msg_type_number_t;
typedef unsigned long vm_address_t;
typedef unsigned long vm_size_t;

#define KERN_SUCCESS 0

__BEGIN_DECLS
extern mach_port_t mach_task_self_;
__END_DECLS
#define mach_task_self() mach_task_self_
