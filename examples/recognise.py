import typescout

answer = typescout.identify("holiday.gif")
print(answer, answer.mime)
