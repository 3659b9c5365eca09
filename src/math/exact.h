#pragma once

// The nearest doubles by arithmetic with as many bits as it takes, in microseconds: for arguments whose
// results lie next to the middle between two doubles, and for results that are not normal.
namespace varpre::math {

// Of a finite x.
double exact_exp(double x);

// Of a positive, finite x. `estimate` is ln x to some 2^-40 of max(1, |ln x|).
double exact_log(double x, double estimate);

// Of positive, finite x and finite y with 2^-60 < |y ln x| < 2^11. `estimate` is of ln x, as above.
double exact_pow(double x, double y, double estimate);

}  // namespace varpre::math
