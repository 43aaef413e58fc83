#include "CocoaFakes.h"

CocoaFakes cocoaFakes;
