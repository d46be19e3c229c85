// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

namespace relay {

// The desktop's keeper of passwords, where there is one. Each call ends in one call of its function, on the
// event loop or at once. `problem` is empty when all went well.
class SecretStore {
  public:
    virtual ~SecretStore() = default;

    // Whether a secret service answers on this desktop.
    virtual bool isAvailable() const = 0;
    // `secret` is empty when there is none of that name, which is no problem.
    virtual void read(const std::string& name,
                      std::function<void(std::string secret, std::string problem)> done) = 0;
    virtual void write(const std::string& name, const std::string& secret,
                       std::function<void(std::string problem)> done) = 0;
    virtual void remove(const std::string& name, std::function<void(std::string problem)> done) = 0;
};

}  // namespace relay
