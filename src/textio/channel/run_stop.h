#pragma once

namespace varpre {

// Ends the run in an orderly way from inside a stage. The message stands in the listing already; the driver
// catches it once, saves what was written so far and ends the process with status 0.
struct RunStop {
  enum class Ending {
    silent,            // the stage's own message is the last line of the listing
    failed_check,      // a stage has failed after its message: the driver writes its abnormal-end banner
    number_not_finite  // an output statement for the store file held a NaN or an infinity and was not
                       // written: the driver writes the message and its abnormal-end banner
  };
  Ending ending = Ending::silent;
};

}  // namespace varpre
