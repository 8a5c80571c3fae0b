#include "engine/equalizer/HartleyFactors.h"

#include <cmath>
#include <numbers>

namespace verdin {

const HartleyFactors& SharedHartleyFactors() {
    static const HartleyFactors factors = [] {
        HartleyFactors f;
        for (int half = 8; half < 512; half *= 2) {
            double* c = f.cosine.data() + half / 2 - 4;  // k = 1 at index 0
            double* s = f.sine.data() + half / 2 - 4;
            for (int k = 1; k < half / 2; ++k) {
                const double t = std::numbers::pi * k / half;  // 2 pi k / L with L = 2M
                c[k - 1] = std::cos(t);
                s[k - 1] = std::sin(t);
            }
            c[half / 2 - 1] = 0.0;
            s[half / 2 - 1] = 1.0;
        }
        return f;
    }();
    return factors;
}

}  // namespace verdin
