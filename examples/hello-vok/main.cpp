// Reads a coach's view of the field with the library and says where the ball is.
#include <VOK/Parser.h>

#include <iostream>

int main() {
  vok::Parser parser("Alpha", vok::CLIENT_ONLINECOACH, 7, 7);
  vok::SensorData record;
  if (!parser.parseServerString("(see_global 12 ((b) 3.5 -7 0.5 0))", record)) return 1;
  const vok::ExactObject& ball = record.exactball;
  std::cout << "cycle " << record.time << ", ball at " << ball.x << ", " << ball.y << "\n";
}
