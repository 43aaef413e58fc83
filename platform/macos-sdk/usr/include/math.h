#pragma once

#include <sys/cdefs.h>

#define isfinite(x) __builtin_isfinite(x)
#define isinf(x) __builtin_isinf(x)
#define isnan(x) __builtin_isnan(x)
#define signbit(x) __builtin_signbit(x)

// Each function for double, float and long double.
#define __MATH_1(name)  \
  double name(double);  \
  float name##f(float); \
  long double name##l(long double)
#define __MATH_2(name)         \
  double name(double, double); \
  float name##f(float, float); \
  long double name##l(long double, long double)
#define __MATH_WITH(type, name) \
  double name(double, type);    \
  float name##f(float, type);   \
  long double name##l(long double, type)
#define __MATH_TO(type, name) \
  type name(double);          \
  type name##f(float);        \
  type name##l(long double)

__BEGIN_DECLS
__MATH_1(acos);
__MATH_1(acosh);
__MATH_1(asin);
__MATH_1(asinh);
__MATH_1(atan);
__MATH_1(atanh);
__MATH_1(cbrt);
__MATH_1(ceil);
__MATH_1(cos);
__MATH_1(cosh);
__MATH_1(erf);
__MATH_1(erfc);
__MATH_1(exp);
__MATH_1(exp2);
__MATH_1(expm1);
__MATH_1(fabs);
__MATH_1(floor);
__MATH_1(lgamma);
__MATH_1(log);
__MATH_1(log10);
__MATH_1(log1p);
__MATH_1(log2);
__MATH_1(logb);
__MATH_1(nearbyint);
__MATH_1(sin);
__MATH_1(sinh);
__MATH_1(sqrt);
__MATH_1(tan);
__MATH_1(tanh);
__MATH_1(tgamma);
__MATH_1(trunc);
__MATH_2(atan2);
__MATH_2(fdim);
__MATH_2(fmax);
__MATH_2(fmin);
__MATH_2(fmod);
__MATH_2(hypot);
__MATH_2(nextafter);
__MATH_2(pow);
__MATH_2(remainder);
__MATH_TO(int, ilogb);
__MATH_WITH(int*, frexp);
__MATH_WITH(int, ldexp);
__MATH_WITH(int, scalbn);
__MATH_WITH(long, scalbln);
__MATH_WITH(long double, nexttoward);
float modff(float, float*);
long double modfl(long double, long double*);
float remquof(float, float, int*);
long double remquol(long double, long double, int*);
__END_DECLS
