#pragma once
// Numerical inversion of a Laplace transform by the fixed Talbot contour
// (Abate and Valko 2004; Abate and Whitt 2006; after Talbot 1979):
//
//   f(tau) ~ (r/M) [ 1/2 F(r) e^(r tau) + sum_{k=1}^{M-1} Re( e^(tau s_k) F(s_k) (1 + i sigma_k) ) ]
//   r = 2M / (5 tau),  theta_k = k pi / M,  s_k = r theta_k (cot theta_k + i),
//   sigma_k = theta_k + (theta_k cot theta_k - 1) cot theta_k
//
// It suits transforms whose singularities all lie on the negative real axis.
// With M = 32 in double precision it keeps about 1e-11 of the function's peak
// and six or more digits wherever the value is above 1e-6 of it; more nodes
// lose accuracy again, to roundoff (the weights grow as e^(0.4 M)). Below that
// floor the result is noise of either sign.
//
// Since r tau = 2M/5 at every tau, e^(tau s_k) (1 + i sigma_k) is one weight per
// node: a time costs M transform evaluations and nothing else.
#include <array>
#include <complex>
#include <vector>

namespace tarvex::levele {

class TalbotInversion {
public:
    static constexpr int kDefaultNodes = 32;

    explicit TalbotInversion(int nodes = kDefaultNodes);

    int nodeCount() const { return nodes_; }

    // f(tau) for tau > 0 from `transform(s, values)`, which fills an array of N
    // transforms at s (several functions share the nodes). `transform` is only
    // called in the upper half-plane and at the real point s = r.
    template <std::size_t N, class Transform>
    std::array<double, N> invert(Transform&& transform, double tau) const {
        const double r = 2.0 * nodes_ / (5.0 * tau);
        std::array<std::complex<double>, N> values;
        std::array<double, N> sum{};
        transform(std::complex<double>(r, 0.0), values);
        for (std::size_t n = 0; n < N; ++n) sum[n] = 0.5 * realWeight_ * values[n].real();
        for (int k = 1; k < nodes_; ++k) {
            const std::size_t kk = static_cast<std::size_t>(k);
            transform(r * shape_[kk], values);
            for (std::size_t n = 0; n < N; ++n) sum[n] += (weight_[kk] * values[n]).real();
        }
        for (std::size_t n = 0; n < N; ++n) sum[n] *= r / nodes_;
        return sum;
    }

private:
    int nodes_;
    double realWeight_;                         // e^(2M/5), the weight of the real node
    std::vector<std::complex<double>> shape_;   // s_k / r
    std::vector<std::complex<double>> weight_;  // e^(tau s_k) (1 + i sigma_k)
};

}  // namespace tarvex::levele
