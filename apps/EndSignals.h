#pragma once

/// The signals that ask a program to end, taken as a wish to finish what is begun. While one of
/// these exists the first of them makes `descriptor` readable, and the second ends the program at
/// once. The web host blocks its signals instead (`StopSignals`): it is ended by the first and has
/// no use for the second, whereas here a signal that comes before or after ends the program as
/// ever.
class EndSignals {
 public:
  EndSignals();
  ~EndSignals();
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

  int descriptor() const;

  /// The same as a signal, from within the program.
  void ask() const;

  /// Ends the program as the signal would have done that came; returns when none did.
  void endIfAsked() const;
};
