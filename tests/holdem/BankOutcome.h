#pragma once

#include <examples/holdem/server/bank/Bank.h>

namespace poker::holdem::test {

/// How an operation of the bank ended.
enum class Outcome { Done, Refused, Thrown };

/// @param operation  false: refused
Outcome outcomeOf(auto operation) {
  try {
    return operation() ? Outcome::Done : Outcome::Refused;
  } catch (const BankError&) {
    return Outcome::Thrown;
  }
}

}  // namespace poker::holdem::test
