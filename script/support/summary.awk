# Reads the report of ctest --output-junit and prints one line: "N passed, N failed, N skipped", with the reasons of
# what was skipped behind it.

function attribute(name) {
  if (!match($0, "[ \t]" name "=\"[^\"]*\"")) return ""
  return plain(substr($0, RSTART + length(name) + 3, RLENGTH - length(name) - 4))
}
function plain(text) {
  gsub(/&lt;/, "<", text)
  gsub(/&gt;/, ">", text)
  gsub(/&quot;/, "\"", text)
  gsub(/&apos;/, "'", text)
  gsub(/&amp;/, "\\&", text)
  return text
}

/<testcase / {
  name = attribute("name")
  status = attribute("status")
  reason = status == "disabled" ? status : ""
  awaited = ""
}
# A test that could not be started is none that chose not to run.
/<skipped / {
  reason = attribute("message")
  if (reason !~ /^SKIP_/) status = "fail"
}
# A test program tells "file:line: Skipped" and the reason in the line below.
awaited && NF { reason = plain($0); awaited = "" }
/: Skipped$/ { awaited = 1 }
/<\/testcase>/ { count[status]++ }
/<\/testcase>/ && (status == "notrun" || status == "disabled") {
  sub(/<\/system-out>.*/, "", reason)
  told = told (told == "" ? ": " : "; ") name " (" reason ")"
}
END { printf "%d passed, %d failed, %d skipped%s\n", count["run"], count["fail"], count["notrun"] + count["disabled"], told }
