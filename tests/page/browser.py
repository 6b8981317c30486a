"""A headless browser for the tests of the page: opens it from a file, types and clicks as a person does,
and tells what went wrong behind the scenes."""

import json
import os
import pathlib
import time

from selenium import webdriver
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

LONGEST_WAIT = 20  # seconds; a busy machine needs some of them


class Browser:
    def __init__(self, width=1400, height=900, dark=False):
        options = webdriver.ChromeOptions()
        options.binary_location = "/usr/bin/chromium"
        for argument in ("--headless=new", "--disable-gpu", "--disable-dev-shm-usage", "--no-first-run",
                         "--disable-background-networking", "--hide-scrollbars", "--lang=en"):
            options.add_argument(argument)
        if os.geteuid() == 0:
            options.add_argument("--no-sandbox")  # the sandbox refuses root
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        service = webdriver.ChromeService("/usr/bin/chromedriver") if hasattr(webdriver, "ChromeService") else \
            webdriver.chrome.service.Service("/usr/bin/chromedriver")
        self.driver = webdriver.Chrome(service=service, options=options)
        self.resize(width, height)
        self.scheme("dark" if dark else "light")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.driver.quit()

    def resize(self, width, height):
        self.command("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=False)

    def scheme(self, name):
        self.command("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": name}])

    def command(self, name, **arguments):
        return self.driver.execute_cdp_cmd(name, arguments)

    def open(self, path, address=""):
        self.driver.get("about:blank")  # so that another address of the same file is a new visit
        self.driver.get(pathlib.Path(path).resolve().as_uri() + address)
        self.until(lambda: self.script("return performance.getEntriesByName('zrt4-ready').length > 0"), "ready")

    def script(self, text, *arguments):
        return self.driver.execute_script(text, *arguments)

    def until(self, holds, what):
        end = time.monotonic() + LONGEST_WAIT
        while not holds():
            if time.monotonic() > end:
                raise AssertionError(f"waited in vain: {what}")
            time.sleep(0.03)

    # --- what a person does
    def type(self, *keys):
        for key in keys:
            self.driver.switch_to.active_element.send_keys(key)

    def click(self, selector):
        element = self.one(selector)
        self.script("arguments[0].scrollIntoView({block: 'center'})", element)
        element.click()

    # --- what a person sees
    def all(self, selector):
        return self.driver.find_elements(By.CSS_SELECTOR, selector)

    def one(self, selector):
        return self.driver.find_element(By.CSS_SELECTOR, selector)

    def text(self, selector):
        return self.one(selector).text

    def texts(self, selector):
        return self.script("return [...document.querySelectorAll(arguments[0])].map((e) => e.innerText)", selector)

    def focused(self):
        return self.script("const e = document.activeElement; return e.id || e.getAttribute('role') || e.tagName")

    def column(self, label):
        """The texts of a column, of the rows that are drawn."""
        return self.script("""
            const heads = [...document.querySelectorAll(".grid th")].map((e) => e.innerText.replace(/ [▲▼]$/, "").trim());
            const place = heads.indexOf(arguments[0]);
            if (place < 0) throw new Error("no column " + arguments[0] + " in " + heads);
            return [...document.querySelectorAll(".grid tr[data-place]")].map((row) => row.cells[place].textContent);
            """, label)

    def address(self):
        return self.script("return location.hash")

    def picture(self, path):
        self.driver.save_screenshot(str(path))

    def print_pdf(self):
        import base64
        return base64.b64decode(self.command("Page.printToPDF", printBackground=True)["data"])

    # --- what nobody sees
    def console(self):
        """What the browser complained about."""
        return [entry["message"] for entry in self.driver.get_log("browser")]

    def requests(self):
        """The addresses that were asked for, but for the page itself."""
        asked = []
        for entry in self.driver.get_log("performance"):
            message = json.loads(entry["message"])["message"]
            if message["method"] == "Network.requestWillBeSent":
                asked.append(message["params"]["request"]["url"])
        return [url for url in asked if not url.startswith(("about:", "chrome:", "data:,")) and not url.split("#")[0].endswith(".html")]


__all__ = ["Browser", "By", "Keys"]
