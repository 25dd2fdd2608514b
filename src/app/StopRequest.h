#pragma once
// How a program is told to end from outside: by signal, or by the console. Knows nothing of what ending takes.

namespace tarvin {

// Before the first thread is started: from then on a request to end is kept until WaitForStopRequest.
void PrepareStopRequests();

// Blocks until the process is asked to end. One thread.
void WaitForStopRequest();

// Ends the wait, for a program that ends by itself. Any thread.
void EndStopRequests();

}
