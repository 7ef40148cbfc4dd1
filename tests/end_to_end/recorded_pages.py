"""What the pages show of the service's events so far, asked of the page controllers."""
import json
import subprocess

from checks import check
from private_bus import wait_for


class RecordedPages:
    """Beside a private bus with the service on it."""

    def record(self):
        self.recording = f"{self.folder.name}/events.jsonl"
        self.start([f"{self.programs}/metricctl", "record", self.recording])
        wait_for(lambda: any(session["events_on"] for session in self.status()["sessions"]))

    def pages(self):
        """Each page's rows, "key value", without times."""
        with open(self.recording) as recording:
            text = recording.read()
        dumped = subprocess.run(
            [f"{self.programs}/metricctl", "intake", "--quiet", "--dump", "pages"],
            input=text[:text.rfind("\n") + 1], text=True, env=self.environment, timeout=60,
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
        return {key: [" ".join(row) for section in sections for row in section["rows"]
                      if row[0] != "timestamp"]
                for key, sections in json.loads(dumped).items()}

    def shows(self, when, expected, seconds=20):
        """Checks that the pages come to show exactly these rows."""
        def wrong():
            pages = self.pages()
            return {key: pages[key] for key, rows in expected.items() if pages[key] != rows}
        wait_for(lambda: not wrong(), seconds, 0.2)
        check(f"{when}: {wrong()} instead of {expected}", not wrong())

    def stands(self, text, seconds=20):
        """Whether the source comes to say so of itself."""
        return wait_for(lambda: self.status()["source"].endswith(text), seconds, 0.05)

    def standing(self, name):
        """How the metric of this class stands."""
        status = self.status()
        for metric in status["metrics"]:
            if metric["class"] == name:
                return metric["standing"]
        return "not offered" if status["not_offered"].index(name) >= 0 else None
