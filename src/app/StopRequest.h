#pragma once
// How a service is told to end: by signal, or by the console. Knows nothing of what ending takes.

namespace tarvin {

// Before the first thread is started: from then on a request to end is kept until WaitForStopRequest.
void PrepareStopRequests();

// Blocks until the process is asked to end. The thread that prepared.
void WaitForStopRequest();

}
