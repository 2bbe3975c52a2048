# SPDX-License-Identifier: MIT
"""The lines that a process writes to standard error, read by a thread so that the process never waits for its reader."""
import queue
import threading


class ErrorLines:
    """The process is a subprocess.Popen with a pipe for the text of its standard error. Lines are appended to `all`,
    which may be a list with those of earlier processes."""

    def __init__(self, process, all_lines=None):
        self.all = [] if all_lines is None else all_lines
        self.process = process
        self.news = queue.Queue()
        self.thread = threading.Thread(target=self._read, daemon=True)
        self.thread.start()

    def _read(self):
        with self.process.stderr:
            for line in self.process.stderr:
                self.all.append(line.rstrip("\n"))
                self.news.put(self.all[-1])
        self.news.put(None)

    def await_line(self, text):
        """The next line that contains the text."""
        while (line := self.news.get()) is not None:
            if text in line:
                return line
        raise RuntimeError(f"{self.process.args[0]} has ended: " + "\n".join(self.all[-20:]))

    def finish(self):
        """Returns when the process has closed its standard error."""
        self.thread.join()
